#include "platform.h"

#include "backend.h"
#include "environment_variable.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using kelpctl::Backend;
using kelpctl::environmentVariable;
using kelpctl::selectBackend;
using kelpctl::usesWsl;

TEST(Platform, VariableThatWasSetIsSeenByTheRuntime)
{
    const EnvironmentVariable guard("KELPCTL_TEST");
    EXPECT_EQ(environmentVariable("KELPCTL_TEST"), std::nullopt);
    kelpctl::setEnvironmentVariable("KELPCTL_TEST", "value");
    ASSERT_NE(std::getenv("KELPCTL_TEST"), nullptr);
    EXPECT_STREQ(std::getenv("KELPCTL_TEST"), "value");
    EXPECT_EQ(environmentVariable("KELPCTL_TEST"), "value");
}

TEST(Platform, VariableOfAnyLengthIsReadWhole)
{
    const std::string value(5000, 'x');
    const EnvironmentVariable guard("KELPCTL_TEST", value);
    EXPECT_EQ(environmentVariable("KELPCTL_TEST"), value);
}

TEST(Backend, IsWslUnlessTheVariableSaysOtherwise)
{
    const EnvironmentVariable guard("USE_WSL");
    EXPECT_TRUE(usesWsl());
    setVariable("USE_WSL", "1");
    EXPECT_TRUE(usesWsl());
    setVariable("USE_WSL", "0");
    EXPECT_FALSE(usesWsl());
    setVariable("USE_WSL", "true");
    EXPECT_FALSE(usesWsl());
}

TEST(Backend, FlagOverridesTheVariable)
{
    const EnvironmentVariable guard("USE_WSL", "0");
    selectBackend(std::nullopt);
    EXPECT_FALSE(usesWsl());
    selectBackend(Backend::wsl);
    EXPECT_TRUE(usesWsl());
    selectBackend(Backend::docker);
    EXPECT_FALSE(usesWsl());
}

} // namespace
