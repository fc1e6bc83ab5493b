// Takes the place of the system's sleep, for the whole program: the duration is recorded, and time passes only
// when the test asks for that. The linker's --wrap option leads every call here.
#include "fake_host.h"

#include <ctime>

// The two names are the linker's.
extern "C" int __real_nanosleep(const timespec* duration, timespec* remaining);
extern "C" int __wrap_nanosleep(const timespec* duration, timespec* remaining);

int __wrap_nanosleep(const timespec* duration, timespec* remaining)
{
    const auto nanoseconds = static_cast<long long>(duration->tv_sec) * 1'000'000'000 + duration->tv_nsec;
    fake::host().record("sleep " + std::to_string(nanoseconds / 1'000) + " us");
    return fake::host().sleepsReally ? __real_nanosleep(duration, remaining) : 0;
}
