#include "output.h"

#include "modes.h"
#include "texts.h"

#include <cerrno>
#include <cstdint>
#include <unistd.h>

namespace stand_in {
namespace {

bool usesUtf8()
{
    return environmentOr("WSL_UTF8", "") == "1" && !modeIsOn("inbox");
}

std::string_view lineEnd()
{
    return modeIsOn("crcrlf") || modeIsOn("inbox") ? "\r\r\n" : "\r\n";
}

std::string withLineEnds(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\n') {
            result += lineEnd();
        } else {
            result += c;
        }
    }
    return result;
}

// Decodes one character. A byte that begins none stands for itself.
char32_t takeCharacter(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (length == 1 || length > text.size()) {
        text.remove_prefix(1);
        return lead;
    }
    char32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        value = (value << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    text.remove_prefix(length);
    return value;
}

void appendUnit(std::string& bytes, char32_t unit)
{
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>((unit >> 8U) & 0xFFU);
}

std::string utf16le(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        if (character < 0x10000) {
            appendUnit(bytes, character);
        } else {
            appendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10U));
            appendUnit(bytes, 0xDC00 + ((character - 0x10000) & 0x3FFU));
        }
    }
    return bytes;
}

std::string encoded(std::string_view text)
{
    const std::string lines = withLineEnds(text);
    return usesUtf8() ? lines : utf16le(lines);
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
    std::string text(modeIsOn("localised") ? german(english) : english);
    const std::size_t place = text.find("{}");
    return place == std::string::npos ? text : text.replace(place, 2, argument);
}

void printTo(int descriptor, std::string_view text)
{
    writeBytes(descriptor, encoded(text));
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
    print(failure.text + "\n" + (failure.code.empty() ? "" : message("Error code: {}", failure.code) + "\n"));
}

void printSuccess()
{
    print(message("The operation completed successfully. ") + "\n");
}

void fail(std::string_view english, std::string_view code, std::string_view argument)
{
    throw Failure{message(english, argument), std::string(code)};
}

void failOnNothingInstalled()
{
    fail("Windows Subsystem for Linux has no installed distributions.\n"
         "You can resolve this by installing a distribution with the instructions below:\n"
         "\n"
         "Use 'wsl.exe --list --online' to list available distributions\n"
         "and 'wsl.exe --install <Distro>' to install.");
}

} // namespace stand_in
