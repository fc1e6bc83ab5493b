#include "special_modes.h"

#include "command_line.h"
#include "modes.h"
#include "output.h"
#include "process.h"
#include "texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <unistd.h>
#include <utility>

namespace stand_in {
namespace {

// What a program in the place of wsl.exe says to whatever it is asked. "MODE=N" gives the status N.
struct WholeAnswer {
    std::string_view mode;
    int stream;
    std::string_view text;
    int status;
};

constexpr std::string_view notInstalled =
    "The Windows Subsystem for Linux is not installed. You can install by running 'wsl.exe --install'.\n"
    "For more information please visit https://aka.ms/wslinstall";

const std::array wholeAnswers = {
    WholeAnswer{"not-installed-stderr", STDERR_FILENO, notInstalled, 1},
    WholeAnswer{"not-installed-stdout", STDOUT_FILENO, notInstalled, 1},
    WholeAnswer{"must-be-updated", STDERR_FILENO,
                "Windows Subsystem for Linux must be updated to the latest version to proceed. "
                "You can update by running 'wsl.exe --update'.",
                1},
    WholeAnswer{"usage-stub", STDOUT_FILENO, inboxUsageText(), ownFailure},
    WholeAnswer{"not-accessible", STDOUT_FILENO, "The file cannot be accessed by the system.", 1},
};

int toStatus(const std::string& text, int fallback)
{
    int status = fallback;
    std::from_chars(text.data(), text.data() + text.size(), status);
    return status;
}

// The console of a user would be asked to press a key, for up to a minute.
int say(const WholeAnswer& answer)
{
    printTo(answer.stream, message(answer.text) + "\n");
    sleepMilliseconds(numberFromEnvironment("WSL_STAND_IN_WAIT_MS", 0));
    return toStatus(modeValue(answer.mode), answer.status);
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

// The first option that an old build does not know; empty when it knows all.
std::string unknownToInbox(std::string_view word, std::string_view rest)
{
    if (isOneOf(word, {"-v", "--version", "--status"})) {
        return std::string(word);
    }
    if (modeIsOn("inbox-old") && isOneOf(word, {"-l", "--list", "--import"})) {
        for (const std::string& option : splitArguments(rest)) {
            if (isOneOf(option, {"-v", "--verbose", "--version"})) {
                return option;
            }
        }
    }
    return {};
}

// The first word of the message says option, where newer builds say argument.
int refuseAsInbox(const std::string& option)
{
    print(message(failures::unknownToInbox.text, option) + "\n" + message(inboxUsageText()) + "\n");
    return ownFailure;
}

int printGarbage()
{
    std::string bytes;
    for (int i = 0; i < 1021; ++i) {
        bytes += static_cast<char>((i * 167 + 255) % 256);
    }
    writeBytes(STDOUT_FILENO, bytes);
    writeBytes(STDERR_FILENO, bytes);
    return 0;
}

// What no build is known to print, for callers that must stand it.
int printBytesOf(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    writeBytes(STDOUT_FILENO, std::string(std::istreambuf_iterator<char>(stream), {}));
    return ownFailure;
}

int printFlood()
{
    const std::string block(1 << 20, 'x');
    for (int i = 0; i < 100; ++i) {
        writeBytes(STDOUT_FILENO, block);
    }
    return 0;
}

int hang()
{
    for (;;) {
        sleepMilliseconds(1000);
    }
}

} // namespace

std::optional<int> behaveSpecially(std::string_view word, std::string_view rest)
{
    if (modeIsOn("warning")) {
        warn("A localhost proxy configuration was detected but not mirrored into WSL.");
    }
    if (modeIsOn("upgrading")) {
        printTo(STDERR_FILENO, "WSL is finishing an upgrade...\n");
        sleepMilliseconds(numberFromEnvironment("WSL_STAND_IN_WAIT_MS", 0));
    }
    if (modeIsOn("hang")) {
        return hang();
    }
    if (modeIsOn("garbage")) {
        return printGarbage();
    }
    if (modeIsOn("flood")) {
        return printFlood();
    }
    if (modeIsOn("bytes")) {
        return printBytesOf(modeValue("bytes"));
    }
    if (modeIsOn("nothing")) {
        return 0;
    }
    if (modeIsOn("status")) {
        return toStatus(modeValue("status"), 1);
    }
    if (modeIsOn("code")) {
        fail("The sentence that goes with the code. ", modeValue("code"));
    }
    for (const WholeAnswer& answer : wholeAnswers) {
        if (modeIsOn(answer.mode)) {
            return say(answer);
        }
    }
    if (modeIsOn("inbox") || modeIsOn("inbox-old")) {
        if (const std::string option = unknownToInbox(word, rest); !option.empty()) {
            return refuseAsInbox(option);
        }
    }
    if (modeIsOn("local-system") && !isOneOf(word, {"-v", "--version", "--help"})) {
        fail(failures::localSystem);
    }
    return std::nullopt;
}

void requireVirtualMachine(std::string_view context)
{
    for (const auto& [mode, failure] : {std::pair("virtualisation-off", failures::virtualisationOff),
                                        std::pair("component-missing", failures::componentMissing)}) {
        if (modeIsOn(mode)) {
            fail(failure.text, "Wsl/Service/" + std::string(context) + "/" + std::string(failure.code));
        }
    }
}

} // namespace stand_in
