#include "asking/stage.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Work that has moved within this time goes on.
constexpr seconds pause{5};
// Between two looks no more than this counts.
constexpr seconds longestGap{5};
constexpr seconds usualStallLimit{120};
// What the engine does with an archive that it has takes several times as long as sending it did.
constexpr seconds sentStallLimit{600};
// Below this share of a known total a pause is not the end.
constexpr int nearlyAll = 90;

bool isRead(Signal signal)
{
    return signal == Signal::load || signal == Signal::import;
}

bool hasSentAll(const Stage& stage)
{
    return isRead(stage.signal) && stage.total && stage.bytes.value_or(0) >= *stage.total;
}

seconds limitOf(const Stage& stage, const Expectation& expected)
{
    return expected.stallLimit.value_or(hasSentAll(stage) ? sentStallLimit : usualStallLimit);
}

milliseconds quietTime(std::span<const Sample> samples)
{
    milliseconds quiet{0};
    for (std::size_t index = samples.size() - 1; index > 0; --index) {
        if (samples[index].bytes > samples[index - 1].bytes) {
            break;
        }
        quiet += std::min<milliseconds>(samples[index].at - samples[index - 1].at, longestGap);
    }
    return quiet;
}

// A disk that has outgrown the total shows that the total was another one.
std::optional<int> percentOf(const Stage& stage)
{
    constexpr std::uint64_t all = 100;
    constexpr std::uint64_t most = 99;
    if (!stage.total || *stage.total == 0 || stage.bytes.value_or(0) == 0 || *stage.bytes > *stage.total) {
        return std::nullopt;
    }
    // Of sizes beyond 2^57 the last digits do not matter.
    const std::uint64_t part =
        *stage.total >= all * all ? *stage.bytes / (*stage.total / all) : *stage.bytes * all / *stage.total;
    return static_cast<int>(std::min(part, most));
}

// The first sample from which on something was there.
const Sample& beginOf(std::span<const Sample> samples)
{
    return *std::find_if(samples.begin(), samples.end(), [](const Sample& each) { return each.bytes.value_or(0) > 0; });
}

// Bytes a second between two samples; 0 when there is no time between them.
double rateOf(const Sample& from, const Sample& to)
{
    const auto time = std::chrono::duration<double>(to.at - from.at).count();
    return time > 0 ? static_cast<double>(*to.bytes - *from.bytes) / time : 0;
}

// Only from what went on for ten seconds, for a tenth of the whole, and in its second half as fast as in its first, give
// or take the half.
std::optional<seconds> timeLeft(std::span<const Sample> samples, const Stage& stage)
{
    constexpr seconds enough{10};
    constexpr int tenth = 10;
    constexpr double steady = 1.5;
    if (stage.signal == Signal::load || stage.percent.value_or(0) < tenth || stage.quiet >= pause) {
        return std::nullopt;
    }
    const Sample& begin = beginOf(samples);
    const Sample& now = samples.back();
    if (now.at - begin.at < enough) {
        return std::nullopt;
    }
    const milliseconds half = (begin.at + now.at) / 2;
    const Sample& middle =
        *std::find_if(samples.begin(), samples.end(), [half](const Sample& each) { return each.at >= half; });
    const double first = rateOf(begin, middle);
    const double second = rateOf(middle, now);
    if (std::min(first, second) <= 0 || std::max(first, second) > steady * std::min(first, second)) {
        return std::nullopt;
    }
    const double left = static_cast<double>(*stage.total - *now.bytes) / rateOf(begin, now);
    return std::chrono::ceil<seconds>(std::chrono::duration<double>(left));
}

struct Rule {
    State state;
    bool (*applies)(const Stage& stage, const Expectation& expected);
};

// The first one that applies. What has shown nothing of itself yet may be a client that cannot be seen reading (one that
// has another one do the work), and is never called stalled; a disk that does not appear is.
constexpr std::array rules = {
    Rule{State::running,
         [](const Stage& stage, const Expectation&) {
             return stage.signal == Signal::none || (isRead(stage.signal) && stage.bytes.value_or(0) == 0);
         }},
    Rule{State::stalled,
         [](const Stage& stage, const Expectation& expected) { return stage.quiet >= limitOf(stage, expected); }},
    Rule{State::lowDisk,
         [](const Stage& stage, const Expectation&) { return stage.freeRoom && *stage.freeRoom < lowDiskBytes; }},
    Rule{State::preparing, [](const Stage& stage, const Expectation&) { return stage.bytes.value_or(0) == 0; }},
    Rule{State::sent, [](const Stage& stage, const Expectation&) { return hasSentAll(stage); }},
    Rule{State::growing,
         [](const Stage& stage, const Expectation&) {
             return stage.quiet < pause || stage.percent.value_or(nearlyAll) < nearlyAll;
         }},
    Rule{State::finishing, [](const Stage&, const Expectation&) { return true; }},
};

} // namespace

Stage stageOf(std::span<const Sample> samples, const Expectation& expected)
{
    Stage stage;
    if (samples.empty()) {
        return stage;
    }
    const Sample& now = samples.back();
    stage.signal = expected.signal;
    stage.bytes = now.bytes;
    stage.total = expected.total;
    stage.freeRoom = now.freeRoom;
    stage.quiet = std::chrono::floor<seconds>(quietTime(samples));
    stage.elapsed = std::chrono::floor<seconds>(now.at);
    stage.percent = percentOf(stage);
    stage.left = timeLeft(samples, stage);
    stage.state = std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) {
                      return rule.applies(stage, expected);
                  })->state;
    return stage;
}

} // namespace kelpctl
