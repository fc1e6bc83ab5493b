#include "golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

void expectGolden(const std::filesystem::path& file, const std::string& text)
{
    if (std::getenv("ZQORB_RENEW_GOLDEN") != nullptr) {
        // There nobody would see what has changed.
        ASSERT_EQ(std::getenv("CI"), nullptr) << "golden files are not renewed where CI is set";
        std::ofstream(file, std::ios::binary) << text;
        return;
    }
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(stream) << "there is no golden file " << file;
    const std::string golden{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    EXPECT_EQ(golden, text) << file << " says something else; the README.md beside it tells how to renew it";
}
