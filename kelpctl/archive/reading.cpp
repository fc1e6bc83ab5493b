#include "archive/reading.h"

#include "archive/checksum.h"
#include "archive/contents.h"
#include "archive/entries.h"
#include "archive/packed_bytes.h"
#include "archive/sha256.h"
#include "archive/unpackers.h"
#include "asking/unpacked_size.h"

#include "host/files.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <system_error>

namespace kelpctl {
namespace {

using Clock = std::chrono::steady_clock;
using Blocks = std::function<void(std::string_view)>;

constexpr std::uintmax_t gibibyte = 1024UL * 1024 * 1024;
// Files of zeros alone are packed closer; file systems are packed to a third or a tenth.
constexpr std::uintmax_t closestPacking = 500;
// A tar archive ends in two blocks of zeros.
constexpr std::size_t endMark = 1024;

// Thrown when as much was read as was to be.
struct Enough {};

// Counts what is unpacked, and ends it where it is enough or too much.
class Pace {
public:
    Pace(const Reading& reading, std::uintmax_t fileBytes)
        : reading_(reading), fileBytes_(fileBytes), start_(Clock::now())
    {
    }

    void add(std::string_view block)
    {
        bytes_ += block.size();
        const std::string_view end = block.substr(block.size() - std::min(block.size(), endMark));
        const std::size_t zeros = end.size() - (end.find_last_not_of('\0') + 1);
        zerosAtEnd_ = zeros + (zeros == block.size() ? zerosAtEnd_ : 0);
        if (bytes_ > gibibyte && bytes_ / closestPacking > fileBytes_) {
            throw Unreadable(Damage::bomb, "it unpacks to more than 500 times its size");
        }
        if (bytes_ > reading_.unpackedBytes.value_or(bytes_) ||
            (reading_.time && Clock::now() - start_ > *reading_.time)) {
            throw Enough();
        }
    }

    std::uintmax_t bytes() const { return bytes_; }
    bool endMarked() const { return zerosAtEnd_ >= endMark; }

private:
    const Reading& reading_;
    std::uintmax_t fileBytes_;
    Clock::time_point start_;
    std::uintmax_t bytes_ = 0;
    std::uintmax_t zerosAtEnd_ = 0;
};

using Next = std::function<std::string_view()>;

void drain(const Next& next)
{
    while (!next().empty()) {
    }
}

void walk(const Next& next, Contents& contents)
{
    Entries entries(next);
    while (const std::optional<Entry> entry = entries.next()) {
        const std::size_t wanted = Contents::wanted(*entry);
        contents.take(*entry, wanted > 0 ? entries.content(wanted) : std::string());
    }
}

// The whole stream, and what stands behind the archive in it: checksums come last.
void readThrough(PackedBytes& packed, ArchiveKind kind, Pace& pace, Contents& contents)
{
    const std::unique_ptr<Unpacking> unpacking = unpackingOf(kind, packed);
    const Next next = [&] {
        const std::string_view block = unpacking->next();
        pace.add(block);
        return block;
    };
    try {
        walk(next, contents);
    } catch (const Unreadable& error) {
        // What is damaged may unpack to nonsense before a checksum tells.
        if (error.damage() != Damage::noTar) {
            throw;
        }
        try {
            drain(next);
        } catch (const Enough&) { // no checksum is that near
        }
        throw;
    }
    drain(next);
    while (!packed.next().empty()) {
    }
}

std::string beginningOf(std::istream& stream, std::size_t length)
{
    std::string bytes(length, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(length));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    stream.clear();
    stream.seekg(0);
    return bytes;
}

// What the packed file says itself: gzip writes the length at its end.
std::optional<std::uintmax_t> statedBytes(ArchiveKind kind, std::istream& stream, std::uintmax_t fileBytes)
{
    const std::optional<std::uint64_t> stated = unpackedSizeIn(stream, fileBytes);
    stream.clear();
    stream.seekg(0);
    return kind == ArchiveKind::tar ? fileBytes : stated;
}

ArchiveFacts read(std::istream& stream, std::uintmax_t fileBytes, const Reading& reading, const Blocks& blocks)
{
    ArchiveFacts facts;
    facts.fileBytes = fileBytes;
    facts.kind = kindOf(beginningOf(stream, headSize));
    if (reading.unpackedBytes == 0 || !canBeUnpacked(facts.kind)) {
        return facts;
    }
    facts.unpackedBytes = statedBytes(facts.kind, stream, fileBytes);
    std::uintmax_t count = 0;
    PackedBytes packed(stream, [&](std::string_view block) {
        count += block.size();
        blocks(block);
        reading.watch(count);
    });
    Pace pace(reading, fileBytes);
    Contents contents;
    facts.extent = Extent::beginning;
    try {
        readThrough(packed, facts.kind, pace, contents);
        facts.extent = Extent::whole;
        facts.unpackedBytes = pace.bytes();
        facts.endMarked = pace.endMarked();
    } catch (const Enough&) { // it was a look at the beginning
    } catch (const Unreadable& error) {
        facts.damage = error.damage();
        facts.reason = error.what();
        facts.unpackedBytes.reset();
    }
    contents.tell(facts);
    return facts;
}

// A pipe or a device is not opened: reading it could take for ever.
ArchiveKind kindOfPath(const std::filesystem::path& file)
{
    try {
        return !foundation::core::path::exists(file)           ? ArchiveKind::missing
               : foundation::core::path::is_regular_file(file) ? ArchiveKind::unknown
                                                               : ArchiveKind::notAFile;
    } catch (const std::filesystem::filesystem_error&) {
        return ArchiveKind::notReadable;
    }
}

} // namespace

Reading quickLook()
{
    constexpr std::uintmax_t enough = 16UL * 1024 * 1024;
    return {enough, std::chrono::milliseconds(500)};
}

ArchiveFacts lookAtFile(const std::filesystem::path& file)
{
    return readArchive(file, {.unpackedBytes = 0});
}

ArchiveFacts readArchive(std::istream& stream, std::uintmax_t fileBytes, const Reading& reading)
{
    return read(stream, fileBytes, reading, [](std::string_view) {});
}

ArchiveFacts readArchive(const std::filesystem::path& file, const Reading& reading)
{
    ArchiveFacts facts;
    facts.kind = kindOfPath(file);
    if (facts.kind != ArchiveKind::unknown) {
        return facts;
    }
    std::error_code error;
    const std::uintmax_t fileBytes = std::filesystem::file_size(file, error);
    facts.fileBytes = error ? 0 : fileBytes;
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream) {
        facts.kind = ArchiveKind::notReadable;
        return facts;
    }
    std::optional<Checksum> checksum = checksumBeside(file);
    Sha256 sum;
    const bool sums = checksum && !reading.unpackedBytes;
    facts = read(stream, fileBytes, reading, [&](std::string_view block) {
        if (sums) {
            sum.add(block);
        }
    });
    if (sums && facts.whole()) {
        checksum->found = sum.finish();
    }
    facts.checksum = std::move(checksum);
    return facts;
}

} // namespace kelpctl
