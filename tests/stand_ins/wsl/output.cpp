#include "output.h"

#include "modes.h"
#include "texts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <unistd.h>

namespace stand_in {
namespace {

// The programs that Windows itself brings know nothing of WSL_UTF8.
constexpr std::array<std::string_view, 7> utf16Only = {
    "inbox",           "inbox-old",  "not-installed-stderr", "not-installed-stdout",
    "must-be-updated", "usage-stub", "not-accessible"};

Encoding encodingOfThisBuild()
{
    Encoding encoding;
    encoding.utf8 = environmentOr("WSL_UTF8", "") == "1" && std::none_of(utf16Only.begin(), utf16Only.end(), modeIsOn);
    const bool old = modeIsOn("crcrlf") || modeIsOn("inbox") || modeIsOn("inbox-old");
    encoding.lineEnd = old ? "\r\r\n" : "\r\n";
    return encoding;
}

std::string_view inUsersLanguage(std::string_view english)
{
    return modeIsOn("localised") ? german(english) : english;
}

} // namespace

void writeBytes(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return;
        }
    }
}

std::string message(std::string_view english, std::string_view argument)
{
    return withArgument(inUsersLanguage(english), argument);
}

void printTo(int descriptor, std::string_view text)
{
    writeBytes(descriptor, encoded(text, encodingOfThisBuild()));
}

void print(std::string_view text)
{
    printTo(STDOUT_FILENO, text);
}

void warn(std::string_view text)
{
    if (environmentOr("WSL_DISABLE_WARNINGS", "") != "1") {
        printTo(STDERR_FILENO, "wsl: " + std::string(text) + "\n");
    }
}

void printRawError(std::string_view text)
{
    writeBytes(STDERR_FILENO, text);
}

void printFailure(const Failure& failure)
{
    print(failureLines(failure.text, failure.code, inUsersLanguage(errorCode)));
}

int reportingFailures(const std::function<int()>& command)
{
    try {
        return command();
    } catch (const Failure& failure) {
        if (!failure.text.empty()) {
            printFailure(failure);
        }
        return failure.status;
    } catch (const std::exception& error) {
        printRawError("wsl stand-in: " + std::string(error.what()) + "\n");
        return ownFailure;
    }
}

void printSuccess()
{
    print(message(succeeded) + "\n");
}

void fail(const KnownFailure& failure, std::string_view argument)
{
    throw Failure{message(failure.text, argument), std::string(failure.code)};
}

void fail(std::string_view english, std::string_view code, std::string_view argument)
{
    throw Failure{message(english, argument), std::string(code)};
}

} // namespace stand_in
