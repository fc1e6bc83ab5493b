#include "arguments.h"

#include <algorithm>
#include <stdexcept>

namespace orb::process::detail {

namespace {

char lowerCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool equalWithoutCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

void refuseNul(const std::string& text, const char* what)
{
    const std::size_t nul = text.find('\0');
    if (nul != std::string::npos) {
        throw std::invalid_argument(std::string(what) + " holds a NUL character after '" + text.substr(0, nul) + "'");
    }
}

void checkVariable(const std::string& name, const std::string& value)
{
    if (name.empty() || name.find('=') != std::string::npos) {
        throw std::invalid_argument("not a name of an environment variable: '" + name + "'");
    }
    refuseNul(name, "an environment variable");
    refuseNul(value, "an environment variable");
}

} // namespace

void checkArguments(const std::vector<std::string>& arguments, const Environment& environment,
                    const std::string& workingDir)
{
    if (arguments.empty()) {
        throw std::invalid_argument("no program to run");
    }
    for (const std::string& argument : arguments) {
        refuseNul(argument, "an argument");
    }
    for (const auto& [name, value] : environment) {
        checkVariable(name, value);
    }
    refuseNul(workingDir, "the working folder");
    refuseBatchFile(arguments.front());
}

void refuseBatchFile(std::string_view program)
{
    // Windows ignores dots and blanks at the end of a file name.
    const std::string_view name = program.substr(0, program.find_last_not_of(". ") + 1);
    if (name.size() < 4) {
        return;
    }
    const std::string_view extension = name.substr(name.size() - 4);
    if (equalWithoutCase(extension, ".bat") || equalWithoutCase(extension, ".cmd")) {
        throw std::invalid_argument("batch files are not run: '" + std::string(program) + "'");
    }
}

bool isDriveDesignator(std::string_view folder)
{
    return folder.size() == 2 && folder[1] == ':' && lowerCase(folder[0]) >= 'a' && lowerCase(folder[0]) <= 'z';
}

std::string startFailure(const std::string& program, const std::string& workingDir)
{
    const std::string failure = "cannot start '" + program + "'";
    return workingDir.empty() ? failure : failure + " in folder '" + workingDir + "'";
}

} // namespace orb::process::detail
