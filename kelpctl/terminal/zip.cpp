#include "terminal/zip.h"

#include <boost/crc.hpp>

// After PKWARE's APPNOTE.TXT, 4.3: a local header in front of each file, and the central directory with all of them.
namespace kelpctl {
namespace {

// Little-endian, in so many bytes.
std::string number(std::size_t value, int bytes)
{
    std::string text;
    for (int index = 0; index < bytes; ++index) {
        text += static_cast<char>(value >> 8 * index & 0xFF);
    }
    return text;
}

// What both headers have of a file: version 2.0, UTF-8 names, stored, 1 January 1980.
std::string common(const ZipEntry& entry)
{
    return number(20, 2) + number(0x0800, 2) + number(0, 2) + number(0, 2) + number(0x0021, 2) +
           number(crc32(entry.content), 4) + number(entry.content.size(), 4) + number(entry.content.size(), 4) +
           number(entry.name.size(), 2) + number(0, 2);
}

} // namespace

std::string zipOf(const std::vector<ZipEntry>& entries)
{
    std::string files;
    std::string directory;
    for (const ZipEntry& entry : entries) {
        const std::string described = common(entry);
        directory += "PK\x01\x02" + number(20, 2) + described + number(0, 2) + number(0, 2) + number(0, 2) +
                     number(0, 4) + number(files.size(), 4) + entry.name;
        files += "PK\x03\x04" + described + entry.name + entry.content;
    }
    const std::string end = "PK\x05\x06" + number(0, 4) + number(entries.size(), 2) + number(entries.size(), 2) +
                            number(directory.size(), 4) + number(files.size(), 4) + number(0, 2);
    return files + directory + end;
}

std::uint32_t crc32(std::string_view bytes)
{
    boost::crc_32_type sum;
    sum.process_bytes(bytes.data(), bytes.size());
    return sum.checksum();
}

} // namespace kelpctl
