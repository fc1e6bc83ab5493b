#include "test_child.h"

#include "watchdog.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <string_view>
#include <thread>

namespace {

using Arguments = std::vector<std::string>;

std::string hex(std::string_view text)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string all;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        all += digits[byte >> 4];
        all += digits[byte & 15];
    }
    return all;
}

void pause(const std::string& milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(milliseconds)));
}

// Prints every argument in hexadecimal, a line each.
int printArguments(const Arguments& arguments)
{
    for (std::size_t i = 2; i < arguments.size(); ++i) {
        std::cout << hex(arguments[i]) << '\n';
    }
    return 0;
}

int printProgramName(const Arguments& arguments)
{
    std::cout << arguments[0];
    return 0;
}

// OUTPUT ERROR: prints both.
int print(const Arguments& arguments)
{
    std::cout << arguments.at(2);
    std::cerr << arguments.at(3);
    return 0;
}

// STATUS
int exitWithStatus(const Arguments& arguments)
{
    exitWith(std::stoll(arguments.at(2)));
}

// OUTPUT ERROR: prints so many bytes to each stream, in turns of a thousand.
int flood(const Arguments& arguments)
{
    const std::string output(1000, 'o');
    const std::string error(1000, 'e');
    // Wine 10's UCRT writes to a stream without a buffer byte by byte.
    std::setvbuf(stderr, nullptr, _IOFBF, error.size());
    std::size_t outputLeft = std::stoul(arguments.at(2));
    std::size_t errorLeft = std::stoul(arguments.at(3));
    while (outputLeft > 0 || errorLeft > 0) {
        const std::size_t outputNow = std::min(outputLeft, output.size());
        const std::size_t errorNow = std::min(errorLeft, error.size());
        std::fwrite(output.data(), 1, outputNow, stdout);
        std::fwrite(error.data(), 1, errorNow, stderr);
        outputLeft -= outputNow;
        errorLeft -= errorNow;
    }
    return 0;
}

// BYTES: a large output, in large pieces.
int pour(const Arguments& arguments)
{
    std::string piece(std::size_t{1024} * 1024, ' ');
    for (std::size_t i = 0; i < piece.size(); ++i) {
        piece[i] = static_cast<char>('a' + i % 23);
    }
    for (std::size_t left = std::stoul(arguments.at(2)); left > 0;) {
        const std::size_t now = std::min(left, piece.size());
        std::fwrite(piece.data(), 1, now, stdout);
        left -= now;
    }
    return 0;
}

// Copies standard input to standard output until it ends, then says so.
int copyInput(const Arguments&)
{
    std::cout << std::cin.rdbuf() << std::flush;
    std::cout.clear(); // nothing to copy is no failure
    std::cout << "(end)";
    return 0;
}

// Answers each line of standard input.
int answer(const Arguments&)
{
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << "heard " << line << '\n' << std::flush;
    }
    return 0;
}

int printFolder(const Arguments&)
{
    std::cout << currentFolder();
    return 0;
}

// NAME...: the values, a line each.
int printVariables(const Arguments& arguments)
{
    for (std::size_t i = 2; i < arguments.size(); ++i) {
        std::cout << variable(arguments[i]).value_or("(unset)") << '\n';
    }
    return 0;
}

// HANDLE
int printOpenFileSize(const Arguments& arguments)
{
    std::cout << openFileSize(arguments.at(2));
    return 0;
}

// MILLISECONDS
int sleep(const Arguments& arguments)
{
    pause(arguments.at(2));
    return 0;
}

// MILLISECONDS COUNT: prints a dot after each pause.
int printDots(const Arguments& arguments)
{
    for (int left = std::stoi(arguments.at(3)); left > 0; --left) {
        pause(arguments.at(2));
        std::cout << '.' << std::flush;
    }
    return 0;
}

// ARGUMENT...: prints "parent", starts this program again with these and exits at once.
int leaveBehind(const Arguments& arguments)
{
    std::cout << "parent" << std::flush;
    startAgain({arguments.begin() + 2, arguments.end()});
    return 0;
}

// MODE...: the same, but this program goes on.
int keepCompany(const Arguments& arguments)
{
    const int status = leaveBehind(arguments);
    pause("120000");
    return status;
}

// FILE: makes the file appear, complete.
int touch(const Arguments& arguments)
{
    const std::filesystem::path file = arguments.at(2);
    std::filesystem::path unfinished = file;
    unfinished += ".new";
    std::ofstream(unfinished) << currentFolder();
    std::filesystem::rename(unfinished, file);
    return 0;
}

// FILE: waits for the file.
int awaitFile(const Arguments& arguments)
{
    while (!std::filesystem::exists(arguments.at(2))) {
        pause("10");
    }
    std::cout << "seen";
    return 0;
}

// GO DONE [THERE]: prints "ready", makes the last file appear, waits for the first and makes the second appear.
int relay(const Arguments& arguments)
{
    std::cout << "ready" << std::flush;
    if (arguments.size() > 4) {
        std::ofstream(arguments[4]) << "";
    }
    while (!std::filesystem::exists(arguments.at(2))) {
        pause("10");
    }
    std::ofstream(arguments.at(3)) << "";
    return 0;
}

// A test that hangs.
int hang(const Arguments&)
{
    Watchdog watchdog(std::chrono::milliseconds{200});
    watchdog.testStarted("Suite.hangs");
    pause("20000");
    return 0;
}

const std::map<std::string, std::function<int(const Arguments&)>>& modes()
{
    static const std::map<std::string, std::function<int(const Arguments&)>> all{
        {"answer", answer},
        {"arguments", printArguments},
        {"await", awaitFile},
        {"copy-input", copyInput},
        {"dots", printDots},
        {"exit", exitWithStatus},
        {"flood", flood},
        {"folder", printFolder},
        {"hang", hang},
        {"keep-company", keepCompany},
        {"leave-behind", leaveBehind},
        {"open-file", printOpenFileSize},
        {"pour", pour},
        {"print", print},
        {"program-name", printProgramName},
        {"relay", relay},
        {"sleep", sleep},
        {"touch", touch},
        {"variables", printVariables},
    };
    return all;
}

} // namespace

int testChild(const std::vector<std::string>& arguments)
{
    constexpr int unknownMode = 97;
    useBinaryStreams();
    if (arguments.size() < 2) {
        return unknownMode;
    }
    const auto mode = modes().find(arguments[1]);
    return mode != modes().end() ? mode->second(arguments) : systemMode(arguments).value_or(unknownMode);
}
