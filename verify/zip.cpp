#include "zip.h"

#include <boost/crc.hpp>

namespace verify {

namespace {

template <class Number>
void append(std::string& bytes, Number value)
{
    for (std::size_t i = 0; i < sizeof value; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

// What both records of a file have: version 2.0, stored, midnight of 1980-01-01, checksum and sizes.
std::string description(const std::string& name, const std::string& content)
{
    constexpr std::uint16_t version = 20;
    constexpr std::uint16_t firstDay = 0x21;
    const auto size = static_cast<std::uint32_t>(content.size());
    std::string bytes;
    for (const std::uint16_t value : {version, std::uint16_t{0}, std::uint16_t{0}, std::uint16_t{0}, firstDay}) {
        append(bytes, value);
    }
    for (const std::uint32_t value : {crc32(content), size, size}) {
        append(bytes, value);
    }
    append(bytes, static_cast<std::uint16_t>(name.size()));
    append(bytes, std::uint16_t{0});
    return bytes;
}

} // namespace

std::uint32_t crc32(const std::string& content)
{
    boost::crc_32_type sum;
    sum.process_bytes(content.data(), content.size());
    return sum.checksum();
}

void Zip::add(const std::string& name, const std::string& content)
{
    constexpr std::uint16_t version = 20;
    constexpr std::size_t unused = 10;
    const auto place = static_cast<std::uint32_t>(files_.size());
    const std::string same = description(name, content);
    files_ += "PK\3\4" + same + name + content;
    directory_ += "PK\1\2";
    append(directory_, version);
    directory_ += same + std::string(unused, '\0');
    append(directory_, place);
    directory_ += name;
    ++count_;
}

std::string Zip::finished() const
{
    std::string bytes = files_ + directory_ + "PK\5\6" + std::string(4, '\0');
    append(bytes, count_);
    append(bytes, count_);
    append(bytes, static_cast<std::uint32_t>(directory_.size()));
    append(bytes, static_cast<std::uint32_t>(files_.size()));
    append(bytes, std::uint16_t{0});
    return bytes;
}

} // namespace verify
