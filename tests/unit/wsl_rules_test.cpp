// Finding wsl.exe, listing distributions and finding the address, for whatever programs print and the system has.
#include "story.h"

#include "wsl.h"

#include <algorithm>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using foundation::core::net::InetAddress;

const std::string fallback = "C:\\Windows\\System32\\wsl.exe";

class WslSearchRule : public RuleTest {
protected:
    // What a look-up command prints.
    std::string candidates()
    {
        std::string printed =
            any.oneIn(3) ? any.oneOf(std::vector<std::string>{"/c/", "/c/", "/c/", "/C/", "/d/", " /c/", "/c", "c/c/"})
                         : "";
        std::string candidate = any.text();
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            // Often the same again.
            if (!any.oneIn(3)) {
                candidate = any.oneIn(3) ? any.nearly(candidate) : any.text();
            }
            printed += candidate;
            printed += any.oneIn(2) ? "\r\n" : any.blanks();
        }
        return any.oneIn(6) ? printed + any.output() : printed;
    }

    // The rule, from the output of a look-up that did not fail to the path.
    std::string path(Story& story, std::string printed)
    {
        if (printed.starts_with("/c/")) {
            printed = "c:\\" + printed.substr(3);
            std::replace(printed.begin(), printed.end(), '/', '\\');
        }
        printed = trimmedText(printed);
        story.detail(wslChannel, "check_possible_executables: wsl_path_candidate = " + printed);
        std::size_t begin = 0;
        while (begin < printed.size()) {
            const std::size_t end = std::min(printed.find('\n', begin), printed.size());
            const std::string candidate = trimmedText(printed.substr(begin, end - begin));
            begin = end + 1;
            if (candidate.empty()) {
                continue;
            }
            if (any.oneIn(4)) {
                story.fails({candidate, "-v"});
                continue;
            }
            RunResult answer = anyResult();
            if (any.oneIn(2) && answer.status == 0) {
                answer.status = 1;
            }
            story.runs({candidate, "-v"}, answer);
            if (answer.status == 0) {
                return candidate;
            }
        }
        return fallenBack(story);
    }

    static std::string fallenBack(Story& story)
    {
        story.detail(wslChannel, "check_possible_executables: fallback to " + fallback);
        return fallback;
    }

    // The rule of the whole search.
    std::string search(Story& story)
    {
        const RunResult where = {any.status(), candidates(), any.text()};
        story.runs({"where", "wsl.exe"}, where);
        if (where.status == 0) {
            return path(story, where.standardOutput);
        }
        story.detail(wslChannel, "check_possible_executables: \"where\" command was not found");
        const RunResult which = {any.status(), candidates(), any.text()};
        story.runs({"which", "wsl.exe"}, which);
        return which.status == 0 ? path(story, which.standardOutput) : fallenBack(story);
    }
};

TEST_P(WslSearchRule, TheFirstCandidateThatAnswersIsFoundAndKept)
{
    chooseMasks();
    Story first;
    wsl = search(first);
    pathUsed(first);
    EXPECT_EQ(getExecutablePath(), wsl);
    first.expectTold();
    forManyValues(5, [this] {
        chooseMasks();
        Story later;
        pathUsed(later);
        EXPECT_EQ(getExecutablePath(), wsl);
        EXPECT_EQ(check_possible_executables(), wsl);
        later.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, WslSearchRule, testing::Range(200U, 240U));

class WslListingRule : public RuleTest {
protected:
    // Names as wsl.exe prints them, and much that it does not.
    std::string printedNames()
    {
        if (any.oneIn(4)) {
            return any.output();
        }
        // With a byte order mark, now and then.
        std::string printed = any.oneIn(4) ? "\xFF\xFE" : "";
        std::string name = any.word();
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            // Often the same again.
            if (!any.oneIn(3)) {
                name = any.oneIn(3) ? any.nearly(name) : any.word();
            }
            for (const char character : name + (any.oneIn(5) ? any.blanks() : "\r\n")) {
                printed += character;
                printed += '\0';
            }
        }
        return printed;
    }

    static std::string bracketed(const std::vector<std::string>& elements)
    {
        std::string text;
        for (const std::string& element : elements) {
            text += (text.empty() ? "[" : " [") + element + "]";
        }
        return text;
    }

    std::vector<std::string> listing(Story& story, bool onlyRunning, bool additional)
    {
        const RunResult result = {any.status(), any.oneIn(5) ? "" : printedNames(), any.output()};
        Arguments command = {wsl, "--list", "-q"};
        pathUsed(story);
        story.detail(wslChannel, "getDistros: wslPath = " + wsl);
        if (onlyRunning) {
            story.detail(wslChannel, "getDistros: wslPath onlyRunning = true");
            command.emplace_back("--running");
        }
        if (additional) {
            story.detail(wslChannel, "getDistros: args = " + bracketed(command));
        }
        story.runs(command, result);
        const std::string status = "getDistros: status = " + std::to_string(result.status);
        story.detail(wslChannel, status);
        if (result.status != 0) {
            story.error(wslChannel, status + "; " + result.standardError);
            return {};
        }
        if (result.standardOutput.empty()) {
            story.detail(wslChannel, "getDistros: no distros");
            return {};
        }
        std::string text = result.standardOutput;
        std::erase(text, '\0');
        if (additional) {
            story.detail(wslChannel, "getDistros: distros = " + bracketed(wordsOf(text)));
        }
        return wordsOf(text);
    }
};

TEST_P(WslListingRule, TheWordsOfTheOutputWithoutItsZeroBytesAreTheNames)
{
    findWsl();
    forManyValues(200, [this] {
        chooseMasks();
        const std::string value = any.oneOf(std::vector<std::string>{"1", "1", "1", "0", "", "true", "11", "1 "});
        setVariable("KELP_ADDITIONAL_LOGGING", any.oneIn(4) ? std::nullopt : std::optional(value));
        const char* const set = std::getenv("KELP_ADDITIONAL_LOGGING");
        const bool onlyRunning = any.oneIn(2);
        Story story;
        const std::vector<std::string> names = listing(story, onlyRunning, set != nullptr && std::string(set) == "1");
        EXPECT_EQ(getDistros(onlyRunning), names);
        story.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, WslListingRule, testing::Range(250U, 253U));

class WslAddressRule : public RuleTest {
protected:
    // Mostly what is looked for, somewhere in a text, otherwise something like it.
    std::u16string like(const std::string& text)
    {
        static const std::vector<std::string> others = {"(WSL",   "WSL)",    "(wsl)",   "(WSL (Hyper-V firewall))",
                                                        "( WSL)", "(WSL2)",  "virtual", "VIRTUAL",
                                                        "Virtua", "Hyper-V", ""};
        const std::string found = any.oneIn(4) ? any.nearly(text) : any.oneIn(4) ? any.oneOf(others) : text;
        return wide(any.textOrNothing() + found + any.textOrNothing());
    }

    std::vector<InetAddress> addresses()
    {
        std::vector<InetAddress> addresses;
        const std::size_t count = any.below(5);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t version = any.oneOf(std::vector<std::uint32_t>{4, 4, 4, 6, 0, 5, 260, 0x40000004});
            addresses.emplace_back(any.oneIn(5) ? "" : std::to_string(any.below(1000)) + any.text(), version,
                                   any.oneIn(4));
        }
        return addresses;
    }

    static std::string addressOf(const Interfaces& interfaces)
    {
        for (const auto& nic : interfaces) {
            if (nic.getFriendlyName().find(u"(WSL)") == std::u16string::npos ||
                nic.getDescription().find(u"Virtual") == std::u16string::npos) {
                continue;
            }
            for (const InetAddress& address : nic.getInetAddresses()) {
                if (!address.isLoopback() && address.getVersion() == 4) {
                    if (!address.getHostAddress().empty()) {
                        return address.getHostAddress();
                    }
                    break;
                }
            }
        }
        return "";
    }
};

TEST_P(WslAddressRule, TheFirstAdapterOfWslWithAnIPv4AddressHasIt)
{
    forManyValues(600, [this] {
        Interfaces interfaces;
        const std::size_t count = any.below(6);
        for (std::size_t i = 0; i < count; ++i) {
            const bool swapped = any.oneIn(8);
            interfaces.emplace_back(like(swapped ? "Virtual" : "(WSL)"), like(swapped ? "(WSL)" : "Virtual"),
                                    addresses());
        }
        const std::string expected = addressOf(interfaces);
        host().interfaces = [&interfaces] { return interfaces; };
        host().forgetEvents();
        Story story;
        story.happens(askedInterfaces);
        EXPECT_EQ(getWslIpAddress(), expected);
        story.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, WslAddressRule, testing::Range(260U, 262U));

} // namespace
