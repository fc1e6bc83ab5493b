#pragma once

#include "answers.h"

#include <functional>
#include <string>
#include <string_view>

// The program's own text: always on standard output, in UTF-16LE without a byte order mark and with CR LF, or in UTF-8
// where WSL_UTF8 is exactly "1".
namespace stand_in {

// What a command that fails throws: the text, the path of its error code ("Wsl/Service/..."), and the exit status.
struct Failure {
    std::string text;
    std::string code;
    int status = ownFailure;
};

// The user's language; "{}" stands for the argument.
std::string message(std::string_view english, std::string_view argument = {});

// Own text; a line feed in it becomes the line end of the current mode.
void print(std::string_view text);

// The same on a standard stream of choice.
void printTo(int descriptor, std::string_view text);

// A warning, "wsl: ...", on standard error, unless WSL_DISABLE_WARNINGS is "1".
void warn(std::string_view text);

// Text of Linux programs on standard error: UTF-8, nothing converted.
void printRawError(std::string_view text);

// Raw bytes on a standard stream.
void writeBytes(int descriptor, std::string_view bytes);

void printFailure(const Failure& failure);

// The status of a command, which may throw: its Failure is printed.
int reportingFailures(const std::function<int()>& command);

// "The operation completed successfully. "
void printSuccess();

[[noreturn]] void fail(const KnownFailure& failure, std::string_view argument = {});
[[noreturn]] void fail(std::string_view english, std::string_view code = {}, std::string_view argument = {});

} // namespace stand_in
