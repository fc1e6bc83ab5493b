#include "special_modes.h"

#include "modes.h"
#include "output.h"
#include "process.h"
#include "texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <unistd.h>

namespace stand_in {
namespace {

constexpr std::array<std::string_view, 4> unknownToInbox = {"-v", "--version", "--status", "--shutdown"};

int toStatus(const std::string& text, int fallback)
{
    int status = fallback;
    std::from_chars(text.data(), text.data() + text.size(), status);
    return status;
}

// The first word of the message says option, where newer builds say argument.
int refuseAsInbox(std::string_view word)
{
    print("Invalid command line option: " + std::string(word) + "\n" + std::string(inboxUsageText()) + "\n");
    return -1;
}

// The console of a user would be asked to press a key, for up to a minute.
int sayNotInstalled(int stream, const std::string& status)
{
    const std::string text =
        message("The Windows Subsystem for Linux is not installed. You can install by running 'wsl.exe --install'.") +
        "\nFor more information please visit https://aka.ms/wslinstall\n";
    printTo(stream, text);
    sleepMilliseconds(numberFromEnvironment("WSL_STAND_IN_WAIT_MS", 0));
    return toStatus(status, 1);
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

std::optional<int> behaveSpecially(std::string_view word)
{
    if (modeIsOn("warning")) {
        warn("A localhost proxy configuration was detected but not mirrored into WSL.");
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
    if (modeIsOn("nothing")) {
        return 0;
    }
    if (modeIsOn("status")) {
        return toStatus(modeValue("status"), 1);
    }
    if (modeIsOn("not-installed-stderr")) {
        return sayNotInstalled(STDERR_FILENO, modeValue("not-installed-stderr"));
    }
    if (modeIsOn("not-installed-stdout")) {
        return sayNotInstalled(STDOUT_FILENO, modeValue("not-installed-stdout"));
    }
    const bool unknown = std::find(unknownToInbox.begin(), unknownToInbox.end(), word) != unknownToInbox.end();
    if (modeIsOn("inbox") && unknown) {
        return refuseAsInbox(word);
    }
    return std::nullopt;
}

} // namespace stand_in
