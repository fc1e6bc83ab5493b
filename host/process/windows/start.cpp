#include "start.h"

#include "arguments.h"
#include "attribute_list.h"
#include "creation_flags.h"
#include "full_path.h"
#include "program_search.h"
#include "system_error.h"
#include "variables.h"
#include "wide_text.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include <windows.h>

namespace orb::process::detail {

using foundation::core::path::fullPath;
using foundation::core::system::lastError;

namespace {

// The handles that a program is to inherit. The system refuses a list that names one twice.
std::vector<HANDLE> distinct(const std::array<Handle, 3>& streams)
{
    std::vector<HANDLE> handles;
    for (const Handle& stream : streams) {
        if (std::find(handles.begin(), handles.end(), stream.get()) == handles.end()) {
            handles.push_back(stream.get());
        }
    }
    return handles;
}

void makeInheritable(const std::vector<HANDLE>& handles)
{
    for (const HANDLE handle : handles) {
        if (SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) == FALSE) {
            throw lastError("cannot pass a stream to a program");
        }
    }
}

std::wstring commandLine(const std::vector<std::string>& arguments, const std::string& failure)
{
    std::wstring line = wide(joinArguments(arguments));
    // The system counts the closing zero too.
    constexpr std::size_t longestLine = 32767;
    if (line.size() + 1 > longestLine) {
        throw foundation::core::system::SystemError(ERROR_FILENAME_EXCED_RANGE,
                                                    failure + ": its command line is " + std::to_string(line.size()) +
                                                        " characters long, and the system takes " +
                                                        std::to_string(longestLine - 1));
    }
    return line;
}

} // namespace

Handle startProgram(StartRequest request, HANDLE job)
{
    std::vector<std::string> arguments = request.arguments;
    arguments.front() = programName(arguments.front());
    const std::string failure = startFailure(arguments.front(), request.workingDir);
    std::wstring line = commandLine(arguments, failure);
    const Variables variables = variablesWith(request.environment);
    std::wstring block = environmentBlock(variables);
    const std::wstring program = findProgram(arguments.front(), variables);
    // A path such as "a.bat\\b\\.." shows only now what it names.
    refuseBatchFile(narrow(program));
    const std::wstring folder = request.workingDir.empty() ? std::wstring() : fullPath(wide(request.workingDir));

    std::vector<HANDLE> inherited = distinct(request.streams);
    std::vector<Attribute> attributes{
        {PROC_THREAD_ATTRIBUTE_HANDLE_LIST, inherited.data(), inherited.size() * sizeof(HANDLE)}};
    if (job != nullptr) {
        attributes.push_back({PROC_THREAD_ATTRIBUTE_JOB_LIST, &job, sizeof job});
    }
    AttributeList list(attributes);
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = request.streams[0].get();
    startup.StartupInfo.hStdOutput = request.streams[1].get();
    startup.StartupInfo.hStdError = request.streams[2].get();
    startup.lpAttributeList = list.get();
    PROCESS_INFORMATION process{};

    // Our own programs inherit what their lists name. Another part of the host may start one without a list, and it
    // would inherit all that is inheritable at that moment; therefore that is never more than one program's streams.
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    makeInheritable(inherited);
    const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                                        creationFlags(request.callersConsole, haveConsole()), block.data(),
                                        folder.empty() ? nullptr : folder.c_str(), &startup.StartupInfo, &process);
    if (started == FALSE) {
        throw lastError(failure.c_str());
    }
    const Handle thread(process.hThread);
    for (Handle& stream : request.streams) {
        stream.close();
    }
    return Handle(process.hProcess);
}

} // namespace orb::process::detail
