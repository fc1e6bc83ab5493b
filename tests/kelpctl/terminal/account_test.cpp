#include "terminal/account.h"

#include <gtest/gtest.h>

namespace {

TEST(Account, OfTheTestIsNotTheSystemsOwn)
{
    const kelpctl::Account account = kelpctl::currentAccount();
    EXPECT_FALSE(account.isSystem);
    EXPECT_EQ(account.name.find('\0'), std::string::npos);
}

} // namespace
