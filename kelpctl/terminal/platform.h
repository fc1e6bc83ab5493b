// What kelpctl needs of the operating system itself. Chosen by CMake from windows/ and posix/.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace kelpctl {

// The arguments behind the program's name, UTF-8. On Windows they are taken from the process's own command line, since
// those of main() have lost every character outside the code page; text that is not well-formed there throws
// std::system_error.
std::vector<std::string> programArguments(int argc, const char* const argv[]);

// Sets a variable so that std::getenv() in any library of this process sees it. ASCII only; `value` is not empty.
// Not to be called while other threads run.
void setEnvironmentVariable(const std::string& name, const std::string& value);

enum class StandardStream { input, output, error };

// Whether the stream is a terminal.
bool isTerminal(StandardStream stream);

// Whether the stream is a terminal that obeys colour sequences. On Windows it is asked to.
bool showsColours(StandardStream stream);

// The user's own folder: %USERPROFILE%, or HOME on other systems. Empty when there is none.
std::filesystem::path userFolder();

// Whether this user may make files and folders in it; found out without doing it.
bool mayWriteInto(const std::filesystem::path& folder);

// The user's language, as a lower-case ISO 639 code; empty when the system names none.
std::string systemLanguage();

// This computer's processor, as Docker calls it: "amd64", "arm64". Empty when the system does not tell.
std::string processorName();

// The folder for what kelpctl itself keeps of a user; empty when the system names none. It need not exist.
std::filesystem::path stateFolder();

// How the user and this computer are called, in all ways that may stand in what programs print.
std::vector<std::string> namesOfUserAndComputer();

// The exit status by which wsl.exe tells that it failed itself.
std::int32_t wslFailureStatus();

// Whether a program inside the distribution can have had that very status.
bool wslFailureIsAmbiguous();

// Standard output and error carry the bytes written, and a console shows them as UTF-8, while this lives. Afterwards the
// console is as it was before, and so it is when Ctrl-C, or the end of the console, ends the process. One at a time.
class StandardStreams {
public:
    StandardStreams();
    ~StandardStreams(); // NOLINT(performance-trivially-destructible): on Windows it has something to do

    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;
};

} // namespace kelpctl
