// How far long work is, by what can be seen of it from outside: a function from samples to a stage. It asks nobody, and
// tells nothing that is not known.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>

namespace kelpctl {

// What there is to be seen of a program's work.
enum class Signal {
    none,
    // The file that WSL unpacks an archive into. It grows in steps, behind what has been unpacked by up to half a minute.
    disk,
    // What the Docker client has read of an archive and sent to the engine. When "load" has sent all, most of the
    // engine's work is still to come; "import" is nearly done then.
    load,
    import,
};

struct Expectation {
    Signal signal = Signal::none;
    // How large the disk will be, about, or how large the archive is; nothing when that cannot be told for certain.
    std::optional<std::uint64_t> total;
    // How long nothing may move until the work counts as stalled, when the user has said so.
    std::optional<std::chrono::seconds> stallLimit;
};

// What was seen at one time of a run.
struct Sample {
    // Since the run began.
    std::chrono::milliseconds at{0};
    // Nothing while there is nothing to see.
    std::optional<std::uint64_t> bytes;
    // On the disk's volume.
    std::optional<std::uint64_t> freeRoom;
};

enum class State {
    // Nothing can be seen of it: it runs, and that is all.
    running,
    // Nothing has come yet.
    preparing,
    growing,
    // Nothing more has come for a while, which the end of the work looks like.
    finishing,
    // The engine has the whole archive, and shows nothing of what it does with it.
    sent,
    lowDisk,
    stalled,
};

struct Stage {
    State state = State::running;
    Signal signal = Signal::none;
    std::optional<std::uint64_t> bytes;
    std::optional<std::uint64_t> total;
    std::optional<std::uint64_t> freeRoom;
    // Of the total, 99 at most; only where a total is known that has not turned out wrong.
    std::optional<int> percent;
    // Only where the work has gone on steadily, and its end is the end of what is seen.
    std::optional<std::chrono::seconds> left;
    // How long nothing has moved. A time in which nobody looked, as when the computer slept, does not count.
    std::chrono::seconds quiet{0};
    std::chrono::seconds elapsed{0};
};

// Of the last sample; they are in the order of time, one about each second. What has been read never becomes less.
Stage stageOf(std::span<const Sample> samples, const Expectation& expected);

// When the volume of the disk has less, the import may soon fail.
inline constexpr std::uint64_t lowDiskBytes = std::uint64_t{1} << 30;

} // namespace kelpctl
