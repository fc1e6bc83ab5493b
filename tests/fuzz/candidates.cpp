// The look-ups: whatever where and which print.
#include "fuzz.h"

// For its inner functions: what is found is kept for the life of a process.
#include "wsl.cpp" // NOLINT(bugprone-suspicious-include): it has them to itself

#include "docker.h"

#include <filesystem>
#include <sstream>
#include <system_error>

namespace {

using orb::process::detail::RunResult;

std::string trimmed(std::string text)
{
    constexpr char blanks[] = " \t\n\v\f\r";
    text.erase(text.find_last_not_of(blanks) + 1);
    text.erase(0, text.find_first_not_of(blanks));
    return text;
}

// Written another way than in the library.
std::vector<std::string> expectedCandidates(std::string output)
{
    if (output.compare(0, 3, "/c/") == 0) {
        output = "c:\\" + output.substr(3);
        for (char& character : output) {
            character = character == '/' ? '\\' : character;
        }
    }
    std::istringstream stream(output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (!trimmed(line).empty()) {
            lines.push_back(trimmed(line));
        }
    }
    return lines;
}

void tryDocker(const std::string& output)
{
    std::string path;
    try {
        path = orb::lvm::detail::getDockerExecutablePath();
    } catch (const std::system_error&) {
        return; // text that is not well-formed, or a path that cannot be looked at
    }
    if (path == trimmed(output)) {
        return;
    }
    fuzz::require(path.find('\n') == std::string::npos && output.find(path) != std::string::npos, "a path is a line");
    fuzz::require(path.find("bin\\win64") == std::string::npos, "a path is not in the host's tree");
    fuzz::require(std::filesystem::is_regular_file(path) && !std::filesystem::is_symlink(path), "a path is a file");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string output(fuzz::textOf(data, size));
    fuzz::setRunner([&output](const std::vector<std::string>&) { return RunResult{0, output, {}}; });
    fuzz::require(orb::lvm::detail::findCandidates() == expectedCandidates(output), "candidates are the trimmed lines");
    tryDocker(output);
    return 0;
}
