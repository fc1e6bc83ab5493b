// Policies beside the stand-in's registry. Those of Windows hold for all that runs there, so that only tests that take turns
// set any: the doctor's.
#include "terminal/policies.h"

#include "set_policies.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

std::vector<std::string> policies()
{
    std::vector<std::string> all;
    for (const kelpctl::Policy& policy : kelpctl::wslPolicies()) {
        all.push_back(policy.name + "=" + std::to_string(policy.value));
    }
    return all;
}

TEST(Policies, AreThoseThatAreSetByName)
{
    const SetPolicies set({{"TestedPolicy", 1}, {"AnotherTestedPolicy", 0}});
    const std::vector<std::string> all = policies();
    EXPECT_THAT(all, testing::IsSupersetOf({"AnotherTestedPolicy=0", "TestedPolicy=1"}));
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
}

TEST(Policies, AreNoneWhereNothingIsSet)
{
    {
        const SetPolicies set({{"TestedPolicy", 1}});
    }
    EXPECT_THAT(policies(), testing::Not(testing::Contains("TestedPolicy=1")));
}

} // namespace
