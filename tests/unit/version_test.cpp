// The two data symbols.
#include "orb/lvm.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

TEST(Version, IsFourNumbers)
{
    EXPECT_STREQ(libzqorb_lvm_version, EXPECTED_VERSION);
    EXPECT_TRUE(std::regex_match(libzqorb_lvm_version, std::regex("[0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+")));
}

TEST(Version, TheBuildDateIsMonthDayAndYear)
{
    const std::regex form("(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 123][0-9] [0-9]{4}");
    EXPECT_TRUE(std::regex_match(libzqorb_lvm_build_date, form)) << libzqorb_lvm_build_date;
}

} // namespace
