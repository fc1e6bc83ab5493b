#include "program_search.h"

#include "arguments.h"
#include "program_not_found.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orb::process::detail {

namespace {

std::string searchPath(const Environment& environment)
{
    if (const auto own = environment.find("PATH"); own != environment.end()) {
        return own->second;
    }
    const char* const inherited = std::getenv("PATH");
    return inherited != nullptr ? inherited : "";
}

// 0 when the file can be run, otherwise the system's error.
int checkExecutable(const std::string& file)
{
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EACCES;
    }
    return ::faccessat(AT_FDCWD, file.c_str(), X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

bool isMissing(const std::string& file)
{
    return ::access(file.c_str(), F_OK) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

// Takes the first entry off the list.
std::string_view takeEntry(std::string_view& list)
{
    const std::string_view entry = list.substr(0, list.find(':'));
    list.remove_prefix(entry.size() == list.size() ? list.size() : entry.size() + 1);
    return entry;
}

} // namespace

std::string findProgram(const std::string& program, const Environment& environment)
{
    if (program.find('/') != std::string::npos) {
        std::string file = program.front() == '/' ? program : std::filesystem::absolute(program).string();
        if (isMissing(file)) {
            throw ProgramNotFound(program);
        }
        return file;
    }
    if (program.empty()) {
        throw ProgramNotFound(program);
    }
    const std::string path = searchPath(environment);
    bool refused = false;
    for (std::string_view list = path; !list.empty();) {
        const std::string_view folder = takeEntry(list);
        if (!folder.starts_with('/')) {
            continue;
        }
        std::string file = std::string(folder) + '/' + program;
        const int refusal = checkExecutable(file);
        if (refusal == 0) {
            return file;
        }
        refused = refused || refusal == EACCES;
    }
    if (refused) {
        throw std::system_error(EACCES, std::system_category(), startFailure(program, {}));
    }
    throw ProgramNotFound(program);
}

} // namespace orb::process::detail
