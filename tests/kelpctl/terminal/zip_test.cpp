#include "terminal/zip.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using kelpctl::zipOf;

std::uint32_t numberAt(const std::string& bytes, std::size_t position, int size)
{
    std::uint32_t number = 0;
    for (int index = size; index > 0; --index) {
        number = number << 8 | static_cast<unsigned char>(bytes.at(position + static_cast<std::size_t>(index) - 1));
    }
    return number;
}

TEST(Zip, OfNothingIsTheEndOfADirectory)
{
    EXPECT_EQ(zipOf({}), std::string("PK\x05\x06", 4) + std::string(18, '\0'));
}

TEST(Zip, HasEachFileAsItIsBehindItsHeader)
{
    const std::string zip = zipOf({{"a/b.txt", "123456789"}});
    EXPECT_EQ(zip.substr(0, 4), "PK\x03\x04");
    EXPECT_EQ(numberAt(zip, 14, 4), 0xCBF43926U) << "the check value of CRC-32";
    EXPECT_EQ(numberAt(zip, 18, 4), 9U);
    EXPECT_EQ(numberAt(zip, 22, 4), 9U);
    EXPECT_EQ(zip.substr(30, 16), "a/b.txt123456789");
    EXPECT_EQ(zip.substr(46, 4), "PK\x01\x02");
}

TEST(Zip, DirectoryLeadsToEachFile)
{
    const std::string big(70000, '\xff');
    const std::string zip = zipOf({{"one", big}, {"two", ""}, {"grüße", "x"}});
    const std::size_t end = zip.size() - 22;
    EXPECT_EQ(zip.substr(end, 4), "PK\x05\x06");
    EXPECT_EQ(numberAt(zip, end + 10, 2), 3U);
    std::size_t entry = numberAt(zip, end + 16, 4);
    EXPECT_EQ(entry + numberAt(zip, end + 12, 4), end);
    for (const std::string name : {"one", "two", "grüße"}) {
        EXPECT_EQ(zip.substr(entry, 4), "PK\x01\x02");
        EXPECT_EQ(zip.substr(entry + 46, name.size()), name);
        const std::size_t file = numberAt(zip, entry + 42, 4);
        EXPECT_EQ(zip.substr(file, 4), "PK\x03\x04");
        EXPECT_EQ(zip.substr(file + 30, name.size()), name);
        EXPECT_EQ(numberAt(zip, file + 14, 4), numberAt(zip, entry + 16, 4));
        entry += 46 + name.size();
    }
    EXPECT_EQ(entry, end);
}

} // namespace
