#include "fake_host.h"

#include <algorithm>
#include <stdexcept>

namespace fake {

namespace {

std::string bracketed(const Arguments& arguments)
{
    std::string text;
    for (const std::string& argument : arguments) {
        text += " [" + argument + "]";
    }
    return text;
}

std::string message(const char* channel, std::uint32_t level, const std::string& text)
{
    return "log " + std::string(channel) + " " + std::to_string(level) + ": " + text;
}

} // namespace

Host& host()
{
    static Host& instance = *new Host;
    return instance;
}

void Host::expectRun(Arguments arguments, RunResult result)
{
    expectRun(std::move(arguments), [result = std::move(result)] { return result; });
}

void Host::expectRun(Arguments arguments, std::function<RunResult()> action)
{
    const std::lock_guard lock(mutex);
    script_.push_back({std::move(arguments), std::move(action)});
}

std::atomic<std::uint32_t>& Host::mask(const std::string& channel)
{
    const std::lock_guard lock(mutex);
    return masks_.try_emplace(channel, detailBit | errorBit).first->second;
}

void Host::record(std::string event)
{
    const std::lock_guard lock(mutex);
    events_.push_back(std::move(event));
    if (afterEvent) {
        afterEvent(events_.back());
    }
}

void Host::failAt(std::string start)
{
    afterEvent = [start = std::move(start)](const std::string& event) {
        if (event.starts_with(start)) {
            throw std::runtime_error("as the test wants");
        }
    };
}

Events Host::events()
{
    const std::lock_guard lock(mutex);
    return events_;
}

Events Host::eventsLike(std::string_view start)
{
    Events found = events();
    std::erase_if(found, [start](const std::string& event) { return !event.starts_with(start); });
    return found;
}

void Host::forgetEvents()
{
    const std::lock_guard lock(mutex);
    events_.clear();
}

void Host::verify()
{
    for (const ScriptedRun& run : script_) {
        ADD_FAILURE() << "an expected run did not happen:" << bracketed(run.arguments);
    }
}

RunResult Host::run(const Arguments& arguments, std::string_view event)
{
    std::function<RunResult()> action;
    {
        const std::lock_guard lock(mutex);
        record(std::string(event));
        if (anyRun) {
            action = [this, &arguments] { return anyRun(arguments); };
        } else if (script_.empty()) {
            ADD_FAILURE() << "an unexpected run:" << bracketed(arguments);
            return {99, "", "unexpected"};
        } else {
            EXPECT_EQ(script_.front().arguments, arguments);
            action = std::move(script_.front().action);
            script_.pop_front();
        }
    }
    return action();
}

std::string narrow(std::u16string_view text)
{
    std::string result;
    for (const char16_t unit : text) {
        if (unit < 0x80) {
            result += static_cast<char>(unit);
        } else if (unit < 0x800) {
            result += static_cast<char>(0xC0 | (unit >> 6));
            result += static_cast<char>(0x80 | (unit & 0x3F));
        } else {
            result += '?';
        }
    }
    return result;
}

std::string ran(const Arguments& arguments)
{
    return "run" + bracketed(arguments);
}

std::string ranIn(const std::string& directory, const Arguments& arguments)
{
    return ran(arguments) + " in " + directory;
}

std::string wslDetail(const std::string& text)
{
    return message("orb:lvm:wsl", detailBit, text);
}

std::string wslError(const std::string& text)
{
    return message("orb:lvm:wsl", errorBit, text);
}

std::string dockerDetail(const std::string& text)
{
    return message("orb:lvm:docker", detailBit, text);
}

std::string dockerError(const std::string& text)
{
    return message("orb:lvm:docker", errorBit, text);
}

std::string commonDetail(const std::string& text)
{
    return message("orb:lvm:common", detailBit, text);
}

std::string commonError(const std::string& text)
{
    return message("orb:lvm:common", errorBit, text);
}

Events sequence(std::initializer_list<Events> parts)
{
    Events all;
    for (const Events& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

void expectEvents(const Events& expected)
{
    const Events actual = host().events();
    host().forgetEvents();
    const std::size_t common = std::min(actual.size(), expected.size());
    for (std::size_t i = 0; i < common; ++i) {
        ASSERT_EQ(expected[i], actual[i]) << "event " << i << " of " << expected.size();
    }
    for (std::size_t i = common; i < actual.size(); ++i) {
        ADD_FAILURE() << "one event too many: " << actual[i];
    }
    for (std::size_t i = common; i < expected.size(); ++i) {
        ADD_FAILURE() << "one event is missing: " << expected[i];
    }
}

} // namespace fake
