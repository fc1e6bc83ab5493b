#include "story.h"

#include "wsl.h"

#include <stdexcept>

namespace fake {

void Story::runs(const Arguments& arguments, const RunResult& result, const std::string& directory)
{
    host().expectRun(arguments, result);
    happens(directory.empty() ? ran(arguments) : ranIn(directory, arguments));
}

void Story::fails(const Arguments& arguments, const std::string& directory)
{
    host().expectRun(arguments, []() -> RunResult { throw std::runtime_error("as the test wants"); });
    happens(directory.empty() ? ran(arguments) : ranIn(directory, arguments));
}

void Story::detail(const std::string& channel, const std::string& text)
{
    message(channel, detailBit, text);
}

void Story::error(const std::string& channel, const std::string& text)
{
    message(channel, errorBit, text);
}

void Story::happens(const std::string& event)
{
    events_.push_back(event);
}

void Story::message(const std::string& channel, std::uint32_t level, const std::string& text)
{
    constexpr std::uint32_t countingBits = 1 | 4 | 8 | 256 | 512;
    const std::string writing = (host().mask(channel) & countingBits) != 0 ? channel : "orb:lvm";
    if ((host().mask(writing) & level) != 0) {
        happens("log " + writing + " " + std::to_string(level) + ": " + text);
    }
}

void Story::expectTold() const
{
    Events told;
    for (const std::string& event : host().events()) {
        for (const char* start : {"run", "log ", "sleep ", askedInterfaces, "temp_directory_name", "tmpnam "}) {
            if (event.starts_with(start)) {
                told.push_back(event);
            }
        }
    }
    host().forgetEvents();
    EXPECT_EQ(told, events_);
}

RuleTest::RuleTest() : any(GetParam()), release_(any.text()), hasRelease_(!any.oneIn(4))
{
    host().release = [this] { return hasRelease_ ? release_.c_str() : nullptr; };
}

void RuleTest::chooseMasks()
{
    for (const std::string& channel : {std::string("orb:lvm"), wslChannel, dockerChannel, commonChannel}) {
        host().mask(channel) = any.oneIn(2) ? detailBit | errorBit : static_cast<std::uint32_t>(any.below(0x8000));
    }
}

RunResult RuleTest::anyResult()
{
    const std::int32_t status = any.status();
    return {status, any.oneIn(3) ? "" : any.output(), any.oneIn(2) ? "" : any.output()};
}

void RuleTest::findWsl()
{
    do {
        wsl = trimmedText(any.text());
    } while (wsl.empty() || wsl.starts_with("/c/") || wsl.find('\n') != std::string::npos);
    host().expectRun({"where", "wsl.exe"}, {0, wsl + "\r\n", ""});
    host().expectRun({wsl, "-v"});
    orb::lvm::detail::getExecutablePath();
    host().forgetEvents();
}

void RuleTest::pathUsed(Story& story) const
{
    story.detail(wslChannel, "getExecutablePath: wsl_path " + wsl);
}

std::string RuleTest::withRelease(const std::string& name) const
{
    return hasRelease_ ? name + "_" + release_ : name;
}

std::string utf8(const std::u16string& text)
{
    const std::u8string converted = std::filesystem::path(text).u8string();
    return {converted.begin(), converted.end()};
}

} // namespace fake
