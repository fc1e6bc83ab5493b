#include "creation_flags.h"

#include <gtest/gtest.h>

namespace {

using orb::process::detail::creationFlags;

TEST(ConsoleOfAProgram, IsTheCallersWhereItHasOne)
{
    EXPECT_EQ(creationFlags(true, true) & CREATE_NO_WINDOW, 0U);
}

TEST(ConsoleOfAProgram, IsNeverANewWindow)
{
    EXPECT_NE(creationFlags(true, false) & CREATE_NO_WINDOW, 0U);
    EXPECT_NE(creationFlags(false, true) & CREATE_NO_WINDOW, 0U);
    EXPECT_NE(creationFlags(false, false) & CREATE_NO_WINDOW, 0U);
}

TEST(ConsoleOfAProgram, DoesNotChangeHowTheEnvironmentIsPassed)
{
    for (const bool callersConsole : {false, true}) {
        for (const bool haveConsole : {false, true}) {
            EXPECT_EQ(creationFlags(callersConsole, haveConsole) & ~static_cast<DWORD>(CREATE_NO_WINDOW),
                      static_cast<DWORD>(CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT));
        }
    }
}

} // namespace
