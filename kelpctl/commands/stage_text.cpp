#include "commands/stage_text.h"

#include "terminal/json.h"

#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;

// In the order of State.
constexpr std::array names = {"running", "preparing", "growing", "finishing", "sent", "lowDisk", "stalled"};

const char* nameOf(State state)
{
    return names.at(static_cast<std::size_t>(state));
}

std::string moved(const Stage& stage)
{
    return shortSize(stage.bytes.value_or(0)) + (stage.signal == Signal::disk ? " unpacked" : " sent");
}

std::string movedOfTotal(const Stage& stage)
{
    if (!stage.percent) {
        return moved(stage);
    }
    const std::string total = shortSize(*stage.total);
    return shortSize(*stage.bytes) + (stage.signal == Signal::disk ? " of about " + total : " of " + total + " sent") +
           " (" + std::to_string(*stage.percent) + " %)";
}

std::string growingText(const Stage& stage)
{
    constexpr std::chrono::seconds noticeable{5};
    if (stage.left) {
        return movedOfTotal(stage) + ", " + roughTime(*stage.left) + " left";
    }
    return movedOfTotal(stage) +
           (stage.quiet < noticeable ? "" : ", quiet " + std::to_string(stage.quiet.count()) + " s");
}

} // namespace

std::string shortSize(std::uint64_t bytes)
{
    constexpr std::uint64_t kib = 1024;
    constexpr std::uint64_t mib = kib * kib;
    constexpr std::uint64_t gib = mib * kib;
    if (bytes >= gib) {
        const std::uint64_t tenths = bytes / gib * 10 + bytes % gib * 10 / gib;
        return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " GiB";
    }
    return bytes >= mib ? std::to_string(bytes / mib) + " MiB" : std::to_string(bytes / kib) + " KiB";
}

std::string roughTime(std::chrono::seconds time)
{
    constexpr long long minute = 60;
    constexpr long long step = 10;
    const long long seconds = time.count();
    return seconds > 2 * minute ? std::to_string((seconds + minute - 1) / minute) + " min"
                                : std::to_string((seconds + step - 1) / step * step) + " s";
}

std::string stageText(const Stage& stage)
{
    std::string preparing = "WSL prepares the disk";
    const std::string quiet = std::to_string(stage.quiet.count()) + " s";
    switch (stage.state) {
    case State::running:
        return {};
    case State::preparing:
        return preparing;
    case State::growing:
        return growingText(stage);
    case State::finishing:
        return moved(stage) + ", finishing " + quiet;
    case State::sent:
        return moved(stage) + ", the engine unpacks";
    case State::lowDisk:
        return moved(stage) + ", only " + shortSize(stage.freeRoom.value_or(0)) + " left on the disk";
    case State::stalled:
        return (stage.bytes.value_or(0) == 0 ? preparing : movedOfTotal(stage)) + ", stalled " + quiet;
    }
    return {};
}

json::value stageObject(const Stage& stage, const std::string& command)
{
    const auto seconds = [](const auto& time) { return time ? json::value(time->count()) : json::value(); };
    return json::object{{"progress", json::object{{"state", nameOf(stage.state)},
                                                  {"bytes", orNull(stage.bytes)},
                                                  {"of", orNull(stage.total)},
                                                  {"percent", orNull(stage.percent)},
                                                  {"secondsLeft", seconds(stage.left)},
                                                  {"freeRoom", orNull(stage.freeRoom)},
                                                  {"quietSeconds", stage.quiet.count()},
                                                  {"seconds", stage.elapsed.count()},
                                                  {"command", textOrNull(command)}}}};
}

} // namespace kelpctl
