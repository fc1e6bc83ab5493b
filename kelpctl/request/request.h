// What the user asked for: the command line as a value, the names that it is about, and what a command works with.
#pragma once

#include "asking/journal.h"
#include "asking/run.h"
#include "request/backend.h"
#include "terminal/console.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

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
    std::optional<std::string> location;
    std::string name;
    std::string shell;
    std::string container;
    std::string image;
    bool rootFs = false;
    bool force = false;
    bool vector = false;
    // As given with "-e", and as names with their values.
    std::vector<std::string> variables;
    std::map<std::string, std::string> environment;

    // What stood behind "--", byte for byte.
    std::vector<std::string> program;

    // complete: the word to complete is an empty one behind the given ones.
    bool nextWord = false;

    // What is told of long work, how long nothing may move in it, and whether it is ended then.
    bool progressObjects = false;
    std::optional<std::chrono::seconds> stallLimit;
    bool endWhenStalled = false;

    // How long doctor waits for each answer.
    std::chrono::seconds timeLimit{10};

    // How long setup, start and exec wait for the backend to answer at all.
    std::chrono::seconds wait{0};

    // The command that "help" is about, all when it is empty; and the text to show.
    std::string topic;
    std::string helpText;
};

// What a command works with.
struct Context {
    const Request& request;
    Console& console;
    const Programs& programs;
    RunJournal& journal;
};

// What must not be shown: the values that were given with "-e".
std::vector<std::string> secretsOf(const Request& request);

// What the placeholders of advice stand for.
struct Names {
    // 1: "kelpctl" and the flags that led here, to be put in front of a command.
    std::string invocation = "kelpctl";
    // 2: the distribution or image.
    std::string image;
    // 3: the container.
    std::string container;
    // 4: what the failure is about: a path, a program, a status.
    std::string subject;
    // The command that creates what was asked about, where it was asked for. No placeholder.
    std::string setup = "kelpctl setup";
};

// Of what the request works on; there is no subject yet.
Names namesOf(const Request& request);

// The names that WSL accepts, and those that Docker accepts for the last part of a repository's name.
bool isWslName(const std::string& name);
bool isDockerName(const std::string& name);

} // namespace kelpctl
