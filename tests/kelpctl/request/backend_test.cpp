#include "request/backend.h"

#include "environment_variable.h"

#include <gtest/gtest.h>

namespace {

using kelpctl::Backend;
using kelpctl::selectBackend;
using kelpctl::selectedBackend;

TEST(Backend, IsWslUnlessTheVariableSaysOtherwise)
{
    const EnvironmentVariable guard("USE_WSL");
    EXPECT_EQ(selectedBackend(), Backend::wsl);
    setVariable("USE_WSL", "1");
    EXPECT_EQ(selectedBackend(), Backend::wsl);
    setVariable("USE_WSL", "0");
    EXPECT_EQ(selectedBackend(), Backend::docker);
    setVariable("USE_WSL", "true");
    EXPECT_EQ(selectedBackend(), Backend::docker);
}

TEST(Backend, FlagOverridesTheVariable)
{
    const EnvironmentVariable guard("USE_WSL", "0");
    selectBackend(std::nullopt);
    EXPECT_EQ(selectedBackend(), Backend::docker);
    selectBackend(Backend::wsl);
    EXPECT_EQ(selectedBackend(), Backend::wsl);
    selectBackend(Backend::docker);
    EXPECT_EQ(selectedBackend(), Backend::docker);
}

} // namespace
