#include "archive/made_archives.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>

#include <archive.h>
#include <archive_entry.h>
#include <zlib.h>

namespace {

constexpr std::size_t blockSize = 512;

void put(std::string& block, std::size_t position, const std::string& text)
{
    block.replace(position, text.size(), text);
}

std::string octal(std::uintmax_t number, int digits)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%0*llo", digits, static_cast<unsigned long long>(number));
    return text.data();
}

// Eight gibibytes and more do not fit: the number stands there in binary then, with a bit in front.
std::string sizeField(std::uintmax_t size)
{
    if (size < 1ULL << 33U) {
        return octal(size, 11);
    }
    std::string field(12, '\0');
    field.front() = '\x80';
    for (std::size_t index = 11; index > 3; --index) {
        field[index] = static_cast<char>(size & 0xFFU);
        size >>= 8U;
    }
    return field;
}

std::string headerOf(char type, const std::string& path, const std::string& target, std::uintmax_t size)
{
    std::string block(blockSize, '\0');
    put(block, 0, path.substr(0, 100));
    put(block, 100, type == '5' ? "0000755" : "0000644");
    put(block, 108, "0000000");
    put(block, 116, "0000000");
    put(block, 124, sizeField(size));
    put(block, 136, octal(1700000000, 11));
    put(block, 148, "        ");
    block[156] = type;
    put(block, 157, target.substr(0, 100));
    put(block, 257, std::string("ustar\0", 6) + "00");
    unsigned int sum = 0;
    for (const char byte : block) {
        sum += static_cast<unsigned char>(byte);
    }
    put(block, 148, octal(sum, 6) + std::string(1, '\0'));
    return block;
}

std::string gzip(const std::string& bytes)
{
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string result(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 64, '\0');
    stream.next_in = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data())); // zlib only reads it
    stream.avail_in = static_cast<unsigned int>(bytes.size());
    stream.next_out = reinterpret_cast<unsigned char*>(result.data());
    stream.avail_out = static_cast<unsigned int>(result.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    result.resize(stream.total_out);
    deflateEnd(&stream);
    return result;
}

la_ssize_t append(archive* /*writer*/, void* result, const void* bytes, std::size_t size)
{
    static_cast<std::string*>(result)->append(static_cast<const char*>(bytes), size);
    return static_cast<la_ssize_t>(size);
}

// The writer knows a format that is the bytes themselves.
std::string byLibrary(const std::string& kind, const std::string& bytes)
{
    std::string result;
    archive* writer = archive_write_new();
    EXPECT_EQ(archive_write_add_filter_by_name(writer, kind.c_str()), ARCHIVE_OK) << kind;
    archive_write_set_format_raw(writer);
    archive_write_set_bytes_in_last_block(writer, 1);
    EXPECT_EQ(archive_write_open(writer, &result, nullptr, append, nullptr), ARCHIVE_OK);
    archive_entry* entry = archive_entry_new();
    archive_entry_set_pathname(entry, "data");
    archive_entry_set_filetype(entry, AE_IFREG);
    EXPECT_EQ(archive_write_header(writer, entry), ARCHIVE_OK);
    EXPECT_EQ(archive_write_data(writer, bytes.data(), bytes.size()), static_cast<la_ssize_t>(bytes.size()));
    archive_entry_free(entry);
    EXPECT_EQ(archive_write_free(writer), ARCHIVE_OK);
    return result;
}

} // namespace

TarArchive& TarArchive::header(char type, const std::string& path, const std::string& target, std::uintmax_t size)
{
    bytes_ += headerOf(type, path, target, size);
    return *this;
}

TarArchive& TarArchive::file(const std::string& path, const std::string& content)
{
    header('0', path, {}, content.size());
    bytes_ += content + std::string((blockSize - content.size() % blockSize) % blockSize, '\0');
    return *this;
}

TarArchive& TarArchive::folder(const std::string& path)
{
    return header('5', path, {}, 0);
}

TarArchive& TarArchive::link(const std::string& path, const std::string& target)
{
    return header('2', path, target, 0);
}

TarArchive& TarArchive::hardLink(const std::string& path, const std::string& target)
{
    return header('1', path, target, 0);
}

std::string programFor(unsigned int processor, bool bigEndian)
{
    std::string head = std::string("\x7f"
                                   "ELF\2") +
                       (bigEndian ? '\2' : '\1');
    head.resize(64, '\0');
    head[18] = static_cast<char>(bigEndian ? processor >> 8U : processor & 0xFFU);
    head[19] = static_cast<char>(bigEndian ? processor & 0xFFU : processor >> 8U);
    return head;
}

TarArchive rootFileSystem()
{
    constexpr unsigned int amd64 = 62;
    TarArchive archive;
    archive.folder("./bin/").file("./bin/busybox", programFor(amd64)).link("./bin/sh", "busybox");
    archive.folder("./etc/").file("./etc/wsl.conf", "[interop]\n");
    archive.file("./etc/wsl-distribution.conf", "[shortcut]\nenabled = false\n[windowsterminal]\nenabled = false\n");
    return archive;
}

TarArchive savedImage(const std::string& name, const std::string& processor, const std::string& settings)
{
    const std::string description = std::string(64, 'a') + ".json";
    const std::string layer = std::string(64, 'b') + "/layer.tar";
    TarArchive archive;
    archive.file(description, R"({"architecture":")" + processor + R"(","os":"linux","config":)" + settings + "}");
    archive.file(layer, rootFileSystem().finished());
    archive.file("manifest.json", R"([{"Config":")" + description + R"(","RepoTags":[")" + name + R"("],"Layers":[")" +
                                      layer + R"("]}])");
    return archive;
}

std::string packed(const std::string& kind, const std::string& bytes)
{
    return kind == "tar" ? bytes : kind == "gzip" ? gzip(bytes) : byLibrary(kind, bytes);
}
