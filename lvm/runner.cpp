#include "runner.h"

namespace orb::lvm::detail {

namespace service = orb::process::detail;

RunResult runRequest(const RunRequest& request)
{
    const std::vector<std::string> arguments =
        request.commandLine.empty() ? request.arguments : service::getRunArguments(request.commandLine);
    return service::run(arguments, request.environment, request.workingDir, request.detach);
}

RunResult runCommand(const std::vector<std::string>& arguments)
{
    RunRequest request;
    request.arguments = arguments;
    return runRequest(request);
}

RunResult runCommand(std::initializer_list<std::string> arguments)
{
    return runCommand(std::vector<std::string>(arguments));
}

RunResult runCommand(const std::vector<std::string>& arguments, const std::string& directory)
{
    RunRequest request;
    request.arguments = arguments;
    request.workingDir = directory;
    return runRequest(request);
}

} // namespace orb::lvm::detail
