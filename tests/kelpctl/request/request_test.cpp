#include "request/request.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using kelpctl::isDockerName;
using kelpctl::isWslName;

TEST(Names, OfTheCommandThatCreatesSayWhere)
{
    kelpctl::Request request;
    request.release = "R1";
    EXPECT_EQ(namesOf(request).setup, "kelpctl --release R1 setup");
    request.location = "D:\\my disk";
    EXPECT_EQ(namesOf(request).invocation, "kelpctl --release R1");
    EXPECT_EQ(namesOf(request).setup, "kelpctl --release R1 setup --location \"D:\\my disk\"");
}

TEST(Names, OfWsl)
{
    for (const char* good : {"kelp_hub_R2026b", "a", "A.b-c_9"}) {
        EXPECT_TRUE(isWslName(good)) << good;
    }
    EXPECT_TRUE(isWslName(std::string(256, 'a')));
    for (const char* bad : {"", "two words", "h\xc3\xa9", "a/b", "a:b", "Legacy", "LEGACY"}) {
        EXPECT_FALSE(isWslName(bad)) << bad;
    }
    EXPECT_FALSE(isWslName(std::string(257, 'a')));
}

TEST(Names, OfDocker)
{
    for (const char* good : {"kelp_hub_r2026b", "a", "9", "a.b", "a__b", "a---b"}) {
        EXPECT_TRUE(isDockerName(good)) << good;
    }
    for (const char* bad : {"", "kelp_hub_R1", "_a", "a_", "a..b", "a___b", "a._b", "a b", "a/b", "-", "a."}) {
        EXPECT_FALSE(isDockerName(bad)) << bad;
    }
}

} // namespace
