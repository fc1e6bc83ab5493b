#include "golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

void expectGolden(const std::string& name, const std::string& text)
{
    const std::filesystem::path file = std::filesystem::path(GOLDEN_FOLDER) / name;
    if (std::getenv("ZQORB_RENEW_GOLDEN") != nullptr) {
        std::ofstream(file, std::ios::binary) << text;
        return;
    }
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(stream) << "there is no golden file " << file;
    const std::string golden{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    EXPECT_EQ(golden, text) << name << " says something else; golden/README.md tells how to renew it";
}
