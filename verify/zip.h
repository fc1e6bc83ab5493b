// An archive that Windows opens by itself. What is in it is not compressed.
#pragma once

#include <cstdint>
#include <string>

namespace verify {

class Zip {
public:
    // The name is ASCII, with slashes between folders. Together it may be 4 GiB.
    void add(const std::string& name, const std::string& content);
    // The bytes of the whole archive.
    std::string finished() const;

private:
    std::string files_;
    std::string directory_;
    std::uint16_t count_ = 0;
};

// The usual checksum, that of zip and gzip.
std::uint32_t crc32(const std::string& content);

} // namespace verify
