// Archives: whatever a file holds.
#include "fuzz.h"

#include "archive/description.h"
#include "archive/judgement.h"
#include "archive/reading.h"
#include "terminal/json.h"

#include <sstream>

namespace {

using kelpctl::ArchiveFacts;
using kelpctl::Damage;
using kelpctl::Extent;
using kelpctl::Purpose;

// What a few kilobytes unpack to may be gigabytes.
constexpr std::uintmax_t enough = 32UL * 1024 * 1024;

void requireSense(const ArchiveFacts& facts)
{
    fuzz::require(facts.extent != Extent::whole || facts.damage == Damage::none, "what is damaged was not read wholly");
    fuzz::require(facts.extent != Extent::nothing || facts.entries == 0, "entries come from reading");
    fuzz::require(facts.damage == Damage::none || !facts.reason.empty(), "damage has a reason");
    fuzz::require(!facts.leadsOutside || !facts.upwardPath.empty(), "a path that leads outside is named");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream stream{std::string(fuzz::textOf(data, size))};
    const ArchiveFacts facts = kelpctl::readArchive(stream, size, {.unpackedBytes = enough});
    requireSense(facts);
    for (const Purpose purpose : {Purpose::distribution, Purpose::loadedImage, Purpose::importedImage}) {
        judgeArchive(facts, "archive", {purpose, "image", "amd64"});
        kelpctl::TableLines table(false);
        printArchive(facts, "archive", purpose, {"folder", 1}, table);
        for (const std::string& line : table.take()) {
            fuzz::require(line.find_first_of("\n\r\x1b") == std::string::npos, "a terminal obeys nothing in it");
        }
        fuzz::require(fuzz::isUtf8(kelpctl::jsonLine(archiveObject(facts, "archive", purpose, {}))), "it is UTF-8");
    }
    return 0;
}
