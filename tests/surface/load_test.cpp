// A host that loads the library only while it needs it.
#include "load_system.h"

#include "environment_variable.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

class hxArray;

namespace {

// Less than one small block for each time: what remains is the loader's own.
constexpr std::int64_t allowedBytes = 16000;

using Gateway = void (*)(int, hxArray*[], int, hxArray*[]);

std::string buildDateHeader()
{
    std::ifstream file(BUILD_DATE_HEADER);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Loads the library, uses it so that it fills what it keeps for the life of the process, and unloads it.
void loadAndUse()
{
    const LoadedLibrary library(LIBRARY);
    const auto* const version = static_cast<const char* const*>(library.symbol("libzqorb_lvm_version"));
    ASSERT_NE(version, nullptr);
    ASSERT_STREQ(*version, EXPECTED_VERSION);
    const auto* const date = static_cast<const char* const*>(library.symbol("libzqorb_lvm_build_date"));
    ASSERT_NE(date, nullptr);
    ASSERT_THAT(buildDateHeader(), testing::HasSubstr(std::string("\"") + *date + '"'));
    // Removes nothing, as nothing can be found; but loggers, names and the path of wsl.exe are made.
    const auto teardown = reinterpret_cast<Gateway>(library.symbol("kelp_container_teardown"));
    ASSERT_NE(teardown, nullptr);
    teardown(0, nullptr, 0, nullptr);
}

void repeat(int times)
{
    for (int i = 0; i < times && !testing::Test::HasFatalFailure(); ++i) {
        loadAndUse();
    }
}

TEST(Load, TheLibraryLeavesTheProcessWhenItIsUnloaded)
{
    const EnvironmentVariable nowhere("PATH", "/nowhere");
    ASSERT_FALSE(isLoaded(LIBRARY));
    loadAndUse();
    EXPECT_FALSE(isLoaded(LIBRARY));
    EXPECT_FALSE(isLoaded(HOST_LIBRARY));
}

TEST(Load, AThousandTimesLeavesNothingBehind)
{
    // Boost.Log's own library leaves 81 bytes behind each time that it leaves Wine: it stays.
    const LoadedLibrary others(BOOST_LOG);
    const EnvironmentVariable nowhere("PATH", "/nowhere");
    // What the allocator and the loader keep once is no leak.
    repeat(100);
    const Holdings before = holdings();
    repeat(1000);
    const Holdings after = holdings();

    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_LT(after.bytes - before.bytes, allowedBytes);
    std::printf("%lld bytes more than before, of %lld\n", static_cast<long long>(after.bytes - before.bytes),
                static_cast<long long>(before.bytes));
}

} // namespace
