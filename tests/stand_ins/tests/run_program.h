// Runs a program to its end and returns all that it said. Its streams are files, so that nothing it leaves behind can
// hold the test up.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

struct Outcome {
    // Of a program that the time limit ended on Windows.
    static constexpr unsigned terminated = 12345;

    // On Linux 128 + N for a program that signal N killed.
    long long status = -1;
    std::string output;
    std::string errors;
};

// Names and values that are added to the environment of this process.
using Environment = std::map<std::string, std::string>;

struct Call {
    std::filesystem::path program;
    std::vector<std::string> arguments;
    Environment environment;
    std::string input;
    // Where the files of its streams go, and its working folder.
    std::filesystem::path folder;

    // Windows only: put behind the arguments as it stands; a pipe for input that never ends; an end by force.
    std::string rawArguments = {};
    bool inputStaysOpen = false;
    unsigned terminateAfterMilliseconds = 0;
};

Outcome runProgram(const Call& call);

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& bytes);
