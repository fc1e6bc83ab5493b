// What stands in the way of a program on the search path.
#include "process_system.h"
#include "temporary_folder.h"

#include "host/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using orb::process::detail::run;

TEST(ProgramSearch, PassesOverFoldersOfTheProgramsName)
{
    const TemporaryFolder first;
    const TemporaryFolder second;
    const TemporaryFolder third;
    std::filesystem::create_directories(first.path() / "probe_twin" / "inner");
    std::filesystem::create_directories(first.path() / "probe_twin.exe");
    std::filesystem::create_directories(second.path() / plantChild(third.path(), "probe_twin").filename());
    const std::string path =
        first.path().string() + pathSeparator + second.path().string() + pathSeparator + third.path().string();
    EXPECT_EQ(run({"probe_twin", "print", "found", ""}, {{"PATH", path}}).standardOutput, "found");
}
