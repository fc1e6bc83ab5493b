// The two data symbols.
#include "scan.h"

#include "orb/lvm.h"

#include <gmock/gmock.h>

#include <string_view>

namespace {

TEST(Version, IsFourNumbers)
{
    EXPECT_STREQ(libzqorb_lvm_version, EXPECTED_VERSION);
    Scan scan(libzqorb_lvm_version);
    scan.atLeastOne(Scan::digits);
    for (int number = 1; number < 4; ++number) {
        scan.literal(".").atLeastOne(Scan::digits);
    }
    EXPECT_TRUE(scan.whole()) << libzqorb_lvm_version;
}

TEST(Version, TheBuildDateIsMonthDayAndYear)
{
    const std::string_view date = libzqorb_lvm_build_date;
    EXPECT_THAT(date.substr(0, 3),
                testing::AnyOf("Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"));
    Scan scan(date.substr(3));
    scan.literal(" ").one(" 123").one(Scan::digits).literal(" ");
    for (int digit = 0; digit < 4; ++digit) {
        scan.one(Scan::digits);
    }
    EXPECT_TRUE(scan.whole()) << date;
}

} // namespace
