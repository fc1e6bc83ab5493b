#include "asking/programs.h"

#include "desk.h"

#include <gmock/gmock.h>

namespace {

using namespace kelpctl;

TEST(Programs, ProgramThatCannotBeStartedHasNoStatus)
{
    Desk desk;
    const kelpctl::Run answer = kelpctl::ask(desk.programs, {"broken"});
    EXPECT_FALSE(answer.status.has_value());
    EXPECT_FALSE(answer.succeeded());
    EXPECT_EQ(answer.error, "cannot start");
}

TEST(Programs, WslIsAskedForPlainText)
{
    Desk desk;
    kelpctl::ask(desk.programs, {"wsl.exe"});
    EXPECT_EQ(desk.environment.at("WSL_UTF8"), "1");
    EXPECT_EQ(desk.environment.at("WSL_DISABLE_WARNINGS"), "1");
}

} // namespace
