// What the user asked for: the command line as a value.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

enum class Backend { wsl, docker };
enum class LogLevel { none, error, detail };

struct Request {
    // The name of the command; "help" and "version" also stand for the two flags.
    std::string command;

    // Global flags.
    std::optional<std::string> root;
    std::optional<std::string> release;
    std::optional<std::string> language;
    std::optional<std::string> logFile;
    std::optional<Backend> backend;
    LogLevel log = LogLevel::none;
    bool json = false;

    // Of the commands that take them. Empty names mean the library's defaults.
    std::string archive;
    std::string name;
    std::string shell;
    std::string container;
    std::string image;
    bool rootFs = false;
    bool vector = false;
    std::map<std::string, std::string> environment;

    // What stood behind "--", byte for byte.
    std::vector<std::string> program;

    // complete: the word to complete is an empty one behind the given ones.
    bool nextWord = false;

    // How long doctor waits for each answer.
    std::chrono::seconds timeLimit{10};

    // The text to show for "help".
    std::string helpText;
};

// What must not be shown: the values that were given with "-e".
inline std::vector<std::string> secretsOf(const Request& request)
{
    std::vector<std::string> secrets;
    for (const auto& [name, value] : request.environment) {
        secrets.push_back(value);
    }
    return secrets;
}

} // namespace kelpctl
