#include "doctor/archives.h"

#include "request/backend.h"
#include "terminal/json.h"

#include "host/files.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <system_error>

namespace kelpctl {
namespace {

using namespace std::string_view_literals;
namespace json = boost::json;
namespace rules = orb::lvm::detail;

struct Magic {
    std::string_view bytes;
    ArchiveKind kind;
};

constexpr std::array magics = {
    Magic{"\x1f\x8b"sv, ArchiveKind::gzip},
    Magic{"\xfd"
          "7zXZ\0"sv,
          ArchiveKind::xz},
    Magic{"BZh"sv, ArchiveKind::bzip2},
    Magic{"\x28\xb5\x2f\xfd"sv, ArchiveKind::zstd},
    Magic{"PK\x03\x04"sv, ArchiveKind::zip},
    Magic{"PK\x05\x06"sv, ArchiveKind::zip},
};

unsigned int valueOf(char byte)
{
    return static_cast<unsigned char>(byte);
}

// The header of a tar archive's first entry holds the sum of its own bytes, in octal; where the sum stands, blanks count.
// So archives of the oldest kind are known as well, which have no magic word.
bool startsTar(std::string_view head)
{
    constexpr std::size_t sumPosition = 148;
    constexpr std::size_t sumLength = 8;
    if (head.size() < headSize || head.front() == '\0') {
        return false;
    }
    unsigned int sum = 0;
    for (std::size_t index = 0; index < headSize; ++index) {
        const bool inSum = index >= sumPosition && index < sumPosition + sumLength;
        sum += inSum ? valueOf(' ') : valueOf(head[index]);
    }
    unsigned int stated = 0;
    for (const char digit : head.substr(sumPosition, sumLength)) {
        if (digit >= '0' && digit <= '7') {
            stated = stated * 8 + valueOf(digit) - valueOf('0');
        }
    }
    return sum == stated;
}

bool isText(std::string_view head)
{
    return std::all_of(head.begin(), head.end(), [](char character) {
        return valueOf(character) >= 0x20 || character == '\n' || character == '\r' || character == '\t';
    });
}

std::string headOf(const std::filesystem::path& file, bool& read)
{
    std::ifstream stream(file, std::ios::binary);
    std::string head(headSize, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    read = stream.is_open() && !stream.bad() && (stream || stream.eof());
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head;
}

// A pipe or a device is not opened: reading it could take for ever.
ArchiveKind kindOfFile(const std::filesystem::path& file)
{
    if (!foundation::core::path::is_regular_file(file)) {
        return ArchiveKind::notAFile;
    }
    bool read = false;
    const std::string head = headOf(file, read);
    return read ? kindOf(head) : ArchiveKind::notReadable;
}

// A name as the library keeps it, in UTF-8.
std::string archiveName(const char16_t* name)
{
    return foundation::core::text::cvt_ustring_utf8(name);
}

void take(std::vector<Archive>& archives, const rules::DefaultArchives& names)
{
    for (const char16_t* name : {names.preferred, names.other}) {
        for (Archive& archive : archives) {
            if (archive.name == archiveName(name) && archive.present) {
                archive.taken = true;
                return;
            }
        }
    }
}

void examineArchives(const Context& /*context*/, Examination& found)
{
    found.archiveFolderFailure = reasonOf([&found] {
        const std::filesystem::path folder(orb::lvm::getContainerTarsDirectory());
        found.archiveFolder = utf8OrEmpty(folder.u16string());
        found.archives = lookAtArchives(folder, traitsOf(found.backend).archives);
    });
}

void judgeKind(const Examination& found, const Archive& taken, Findings& findings)
{
    switch (taken.kind) {
    case ArchiveKind::tar:
    case ArchiveKind::gzip:
    case ArchiveKind::xz:
    case ArchiveKind::bzip2:
        return;
    case ArchiveKind::zstd:
        findings.note("ARCHIVE_PACKED_UNUSUALLY", taken.name);
        return;
    default:
        // It is not looked at when the registry has the image.
        const bool pulls = found.backend == Backend::docker && found.pullsFromRegistry;
        findings.add(pulls ? Severity::note : findings.needed(), "ARCHIVE_NOT_USABLE", taken.name);
    }
}

void judgeArchives(const Examination& found, Findings& findings)
{
    if (!findings.needsCreation()) {
        return;
    }
    const Archive* taken = findIn(found.archives, [](const Archive& archive) { return archive.taken; });
    if (taken != nullptr) {
        judgeKind(found, *taken, findings);
    } else if (found.rootExists) {
        findings.add(findings.needed(), "ARCHIVE_NOT_INSTALLED",
                     archiveName(traitsOf(found.backend).archives.preferred));
    } else {
        findings.add(findings.needed(), "ROOT_MISSING", found.root.value);
    }
}

std::string archiveText(const Archive& archive)
{
    if (!archive.present) {
        return kindName(archive.kind);
    }
    return sizeText(archive.size) + ", " + kindName(archive.kind) +
           (archive.taken ? "; \"setup\" would take this one" : "");
}

json::object archiveObject(const Archive& archive)
{
    return {{"name", archive.name},
            {"present", archive.present},
            {"size", archive.present ? json::value(archive.size) : nullptr},
            {"kind", kindName(archive.kind)},
            {"taken", archive.taken}};
}

void describeArchives(const Examination& found, CheckOutput& out)
{
    out.member("archives") = {{"folder", textOrNull(found.archiveFolder)},
                              {"failure", textOrNull(found.archiveFolderFailure)},
                              {"files", listOf(true, found.archives, archiveObject)}};
    const bool known = found.archiveFolderFailure.empty();
    out.judged("folder", known ? found.archiveFolder : "not known: " + found.archiveFolderFailure, false);
    for (const Archive& archive : found.archives) {
        if (archive.taken) {
            out.judged(archive.name, archiveText(archive));
        } else {
            out.row(archive.name, archiveText(archive));
        }
    }
}

constexpr std::array archiveRows = {
    Check{"archives", examineArchives, judgeArchives, describeArchives},
};

} // namespace

std::span<const Check> archiveChecks()
{
    return archiveRows;
}

ArchiveKind kindOf(std::string_view head)
{
    if (head.empty()) {
        return ArchiveKind::empty;
    }
    const auto known = std::find_if(magics.begin(), magics.end(),
                                    [head](const Magic& magic) { return head.starts_with(magic.bytes); });
    if (known != magics.end()) {
        return known->kind;
    }
    if (startsTar(head)) {
        return ArchiveKind::tar;
    }
    return isText(head) ? ArchiveKind::text : ArchiveKind::unknown;
}

const char* kindName(ArchiveKind kind)
{
    constexpr std::array names = {"missing", "empty", "tar",  "gzip",    "xz",         "bzip2",
                                  "zstd",    "zip",   "text", "unknown", "not a file", "not readable"};
    static_assert(names.size() == static_cast<std::size_t>(ArchiveKind::notReadable) + 1);
    return names.at(static_cast<std::size_t>(kind));
}

Archive lookAt(const std::filesystem::path& folder, const std::string& name)
{
    const std::filesystem::path file = folder / std::filesystem::path(foundation::core::text::cvt_utf8_ustring(name));
    Archive archive;
    archive.name = name;
    try {
        archive.present = foundation::core::path::exists(file);
        archive.kind = archive.present ? kindOfFile(file) : ArchiveKind::missing;
    } catch (const std::filesystem::filesystem_error&) {
        archive.kind = ArchiveKind::notReadable;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    archive.size = error ? 0 : size;
    return archive;
}

std::vector<Archive> lookAtArchives(const std::filesystem::path& folder, const rules::DefaultArchives& names)
{
    std::vector<Archive> archives;
    for (const char16_t* name : {orb::lvm::packedDistroArchive, orb::lvm::distroArchive, orb::lvm::packedImageArchive,
                                 orb::lvm::imageArchive}) {
        archives.push_back(lookAt(folder, archiveName(name)));
    }
    take(archives, names);
    return archives;
}

} // namespace kelpctl
