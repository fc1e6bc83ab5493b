#include "doctor/archives.h"

#include "archive/description.h"
#include "archive/judgement.h"
#include "archive/reading.h"
#include "asking/limited.h"
#include "asking/volume.h"
#include "request/backend.h"
#include "terminal/json.h"
#include "terminal/platform.h"
#include "terminal/text.h"

#include "host/files.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelpctl {
namespace {

namespace json = boost::json;
namespace rules = orb::lvm::detail;

// A name as the library keeps it, in UTF-8.
std::string archiveName(const char16_t* name)
{
    return foundation::core::text::cvt_ustring_utf8(name);
}

const Archive* takenOf(const std::vector<Archive>& archives)
{
    return findIn(archives, [](const Archive& archive) { return archive.taken; });
}

std::filesystem::path nameOf(const std::string& name)
{
    return {foundation::core::text::cvt_utf8_ustring(name)};
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

constexpr char notToldInTime[] = "the system did not tell in time";

struct ArchivesSeen {
    std::string failure;
    std::vector<Archive> all;
    ArchiveFacts taken;
};

ArchivesSeen lookInto(const std::filesystem::path& folder, const rules::DefaultArchives& names)
{
    ArchivesSeen seen;
    seen.failure = reasonOf([&] {
        seen.all = lookAtArchives(folder, names);
        if (const Archive* taken = takenOf(seen.all)) {
            seen.taken = readArchive(folder / nameOf(taken->name), quickLook());
        }
    });
    return seen;
}

void examineArchives(const Context& context, Examination& found)
{
    found.processor = processorName();
    std::filesystem::path folder;
    found.archiveFolderFailure = reasonOf([&folder] { folder = orb::lvm::getContainerTarsDirectory(); });
    if (found.archiveFolderFailure.empty()) {
        found.archiveFolder = utf8OrEmpty(folder.u16string());
        const auto look = [folder, names = traitsOf(found.backend).archives] { return lookInto(folder, names); };
        ArchivesSeen seen = within(found.timeLimit, look).value_or(ArchivesSeen{notToldInTime, {}, {}});
        found.archiveFolderFailure = std::move(seen.failure);
        found.archives = std::move(seen.all);
        found.taken = std::move(seen.taken);
    }
    if (found.backend == Backend::docker && found.docker.engine.reachable()) {
        found.engineVolume = engineVolume(context.programs, found.docker.client);
    }
}

ArchiveTarget targetOf(const Examination& found)
{
    const Purpose purpose = found.backend == Backend::wsl ? Purpose::distribution : Purpose::loadedImage;
    return {purpose, found.image, found.processor};
}

// It is not looked at when the registry has the image.
void judgeTaken(const Examination& found, const Archive& taken, Findings& findings)
{
    const bool pulls = found.backend == Backend::docker && found.pullsFromRegistry;
    std::vector<Finding> all = judgeArchive(found.taken, taken.name, targetOf(found));
    const std::vector<Finding> room = judgeRoom(found.taken, Purpose::loadedImage, found.engineVolume);
    all.insert(all.end(), room.begin(), room.end());
    for (Finding& finding : all) {
        finding.severity = pulls ? Severity::note : finding.severity;
    }
    findings.add(all);
}

void judgeArchives(const Examination& found, Findings& findings)
{
    if (!findings.needsCreation()) {
        return;
    }
    if (const Archive* taken = takenOf(found.archives)) {
        judgeTaken(found, *taken, findings);
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

json::object fileObject(const Archive& archive)
{
    return {{"name", archive.name},
            {"present", archive.present},
            {"size", archive.present ? json::value(archive.size) : nullptr},
            {"kind", kindName(archive.kind)},
            {"taken", archive.taken}};
}

json::object takenObject(const ArchiveFacts& taken)
{
    return {{"content", contentName(taken)},
            {"read", extentName(taken.extent)},
            {"unpackedBytes", orNull(taken.unpackedBytes)}};
}

void describeArchives(const Examination& found, CheckOutput& out)
{
    out.member("archives") = {{"folder", textOrNull(found.archiveFolder)},
                              {"failure", textOrNull(found.archiveFolderFailure)},
                              {"files", listOf(true, found.archives, fileObject)},
                              {"taken", takenOf(found.archives) == nullptr ? json::value() : takenObject(found.taken)}};
    const bool known = found.archiveFolderFailure.empty();
    out.judged("folder", known ? found.archiveFolder : "not known: " + found.archiveFolderFailure, false);
    for (const Archive& archive : found.archives) {
        if (archive.taken) {
            out.judged(archive.name, archiveText(archive));
            out.more(std::string(contentName(found.taken)) + ", unpacked " +
                     (found.taken.unpackedBytes ? sizeText(*found.taken.unpackedBytes) : "size not known"));
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

Archive lookAt(const std::filesystem::path& folder, const std::string& name)
{
    const std::filesystem::path file = folder / nameOf(name);
    const ArchiveFacts facts = lookAtFile(file);
    Archive archive{name, facts.kind, false, facts.fileBytes, false};
    reasonOf([&] { archive.present = foundation::core::path::exists(file); });
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
