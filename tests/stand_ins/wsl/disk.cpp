#include "disk.h"

#include "modes.h"
#include "process.h"

#include <algorithm>
#include <charconv>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace stand_in {
namespace {

// As the virtual disks of WSL do.
constexpr long step = 1 << 20;

// An import with a disk that comes late has half of its time for it.
long importTime()
{
    return numberFromEnvironment("WSL_STAND_IN_IMPORT_MS", 0) / (modeIsOn("late-disk") ? 2 : 1);
}

// How far the disk grows before it does no more: "stall=40" at 40 % of its size, half of it without a number.
long limitBy(const char* mode, long size)
{
    constexpr long half = 50;
    constexpr long all = 100;
    if (!modeIsOn(mode)) {
        return std::numeric_limits<long>::max();
    }
    const std::string value = modeValue(mode);
    long percent = half;
    std::from_chars(value.data(), value.data() + value.size(), percent);
    return size * percent / all;
}

// With room that is really taken.
bool allocate(const std::filesystem::path& disk, long size)
{
    const int file = ::open(disk.c_str(), O_WRONLY | O_CLOEXEC);
    const bool done = file >= 0 && ::posix_fallocate(file, 0, size) == 0;
    ::close(file);
    return done;
}

[[noreturn]] void standStill()
{
    for (;;) {
        sleepMilliseconds(1000);
    }
}

} // namespace

void waitForDisk()
{
    if (modeIsOn("late-disk")) {
        sleepMilliseconds(importTime());
    }
}

std::string growDisk(const std::filesystem::path& disk)
{
    const long size = numberFromEnvironment("WSL_STAND_IN_DISK_BYTES", 0);
    const long stalls = limitBy("stall", size);
    const long isFull = limitBy("no-space", size);
    const long steps = modeIsOn("burst") ? 1 : std::max(1L, (size + step - 1) / step);
    for (long done = 1; done <= steps; ++done) {
        sleepMilliseconds(importTime() * done / steps - importTime() * (done - 1) / steps);
        const long next = done == steps ? size : done * step;
        if (next > stalls || (size == 0 && modeIsOn("stall"))) {
            standStill();
        }
        if (next > isFull || (next > 0 && !allocate(disk, next))) {
            return noSpace;
        }
    }
    return {};
}

} // namespace stand_in
