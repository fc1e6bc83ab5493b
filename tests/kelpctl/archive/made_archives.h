// Archives that tests make: tar, byte by byte, so that each may be wrong in its own way, and packed by the libraries.
#pragma once

#include <cstdint>
#include <string>

class TarArchive {
public:
    TarArchive& file(const std::string& path, const std::string& content = {});
    TarArchive& folder(const std::string& path);
    TarArchive& link(const std::string& path, const std::string& target);
    TarArchive& hardLink(const std::string& path, const std::string& target);
    // A header that says what it likes, without content behind it.
    TarArchive& header(char type, const std::string& path, const std::string& target, std::uintmax_t size);

    // All so far without, and with, the mark at the end.
    const std::string& unfinished() const { return bytes_; }
    std::string finished() const { return bytes_ + std::string(1024, '\0'); }

private:
    std::string bytes_;
};

// The beginning of a program for Linux: of a processor by ELF's number.
std::string programFor(unsigned int processor, bool bigEndian = false);

// What is asked of a root file system, and nothing besides.
TarArchive rootFileSystem();

// An image as "docker save" writes it.
TarArchive savedImage(const std::string& name = "kelp_hub_R1:latest", const std::string& processor = "amd64",
                      const std::string& settings = R"({"Cmd":["sh"]})");

// "gzip", "xz", "bzip2", "zstd", or "tar", which leaves it as it is.
std::string packed(const std::string& kind, const std::string& bytes);
