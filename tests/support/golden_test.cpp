#include "golden.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

class Golden : public testing::Test {
protected:
    Golden() { std::ofstream(file, std::ios::binary) << "old\r\n"; }

    static std::string content()
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    inline static const TemporaryFolder folder;
    inline static const std::filesystem::path file = folder.path() / "text";
    const EnvironmentVariable renew{"ZQORB_RENEW_GOLDEN"};
    const EnvironmentVariable integration{"CI"};
};

TEST_F(Golden, TextIsTheSameByteForByte)
{
    expectGolden(file, "old\r\n");
    EXPECT_NONFATAL_FAILURE(expectGolden(file, "old\n"), "says something else");
    EXPECT_NONFATAL_FAILURE(expectGolden(file, "old\r\nold"), "says something else");
    EXPECT_FATAL_FAILURE(expectGolden(folder.path() / "missing", ""), "there is no golden file");
    EXPECT_EQ(content(), "old\r\n");
}

TEST_F(Golden, FileIsRenewedOnRequest)
{
    setVariable("ZQORB_RENEW_GOLDEN", "1");
    expectGolden(file, "new\n");
    EXPECT_EQ(content(), "new\n");
}

TEST_F(Golden, FileIsNotRenewedInContinuousIntegration)
{
    setVariable("ZQORB_RENEW_GOLDEN", "1");
    setVariable("CI", "true");
    EXPECT_FATAL_FAILURE(expectGolden(file, "new\n"), "not renewed where CI is set");
    EXPECT_EQ(content(), "old\r\n");
}

} // namespace
