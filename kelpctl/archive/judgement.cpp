#include "archive/judgement.h"

#include "archive/saved_images.h"
#include "terminal/text.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kelpctl {
namespace {

// What a rule looks at.
struct Case {
    const ArchiveFacts& facts;
    const std::string& name;
    const ArchiveTarget& expected;

    bool is(Purpose purpose) const { return expected.purpose == purpose; }
    bool hasRoot() const { return facts.root.found(); }
    // A root file system was read to the end.
    bool wholeRoot() const { return facts.whole() && hasRoot() && !is(Purpose::loadedImage); }
};

using Subject = std::optional<std::string>;

// A subject, which may be empty, when the rule holds.
struct Rule {
    Severity severity;
    AdviceKey key;
    Subject (*subjectWhen)(const Case& each);
};

Subject when(bool holds, const std::string& subject)
{
    return holds ? Subject(subject) : std::nullopt;
}

Subject missing(const Case& each)
{
    return when(each.facts.kind == ArchiveKind::missing, each.name);
}

Subject notUsable(const Case& each)
{
    return when(!missing(each) && (!canBeUnpacked(each.facts.kind) || each.facts.damage == Damage::noTar), each.name);
}

Subject packedUnusually(const Case& each)
{
    return when(each.facts.kind == ArchiveKind::zstd, each.name);
}

template <Damage Kind>
Subject damaged(const Case& each)
{
    return when(each.facts.damage == Kind, each.name + " (" + each.facts.reason + ")");
}

Subject otherSum(const Case& each)
{
    const std::optional<Checksum>& sum = each.facts.checksum;
    return when(sum && !sum->expected.empty() && !sum->found.empty() && sum->found != sum->expected, each.name);
}

Subject noSum(const Case& each)
{
    const std::optional<Checksum>& sum = each.facts.checksum;
    return when(sum && sum->expected.empty(), sum ? sum->file : std::string());
}

Subject endMissing(const Case& each)
{
    return when(each.facts.whole() && each.facts.entries > 0 && !each.facts.endMarked, each.name);
}

// bsdtar, which WSL unpacks with, refuses each "..".
Subject leadsOutside(const Case& each)
{
    return when(each.facts.leadsOutside || (!each.facts.upwardPath.empty() && each.is(Purpose::distribution)),
                each.facts.upwardPath);
}

Subject imageForWsl(const Case& each)
{
    return when(each.is(Purpose::distribution) && each.facts.images.marked && !each.hasRoot(), each.name);
}

Subject imageForImport(const Case& each)
{
    return when(each.is(Purpose::importedImage) && each.facts.images.marked && !each.hasRoot(), each.name);
}

Subject rootForLoad(const Case& each)
{
    return when(each.is(Purpose::loadedImage) && each.hasRoot() && !each.facts.images.marked, each.name);
}

Subject noSystem(const Case& each)
{
    return when(each.facts.whole() && each.is(Purpose::distribution) && !each.hasRoot() && !each.facts.images.marked,
                each.name);
}

Subject noImage(const Case& each)
{
    const SavedImages& images = each.facts.images;
    return when(each.facts.whole() && each.is(Purpose::loadedImage) && !images.hasDockerList && !images.hasOciList &&
                    !rootForLoad(each),
                each.name);
}

Subject onlyNewerDocker(const Case& each)
{
    const SavedImages& images = each.facts.images;
    return when(each.facts.whole() && each.is(Purpose::loadedImage) && !images.hasDockerList && images.hasOciList,
                each.name);
}

std::vector<std::string> namesIn(const SavedImages& images)
{
    std::vector<std::string> names;
    for (const SavedImage& image : images.all) {
        names.insert(names.end(), image.names.begin(), image.names.end());
    }
    return names;
}

std::string listed(const std::vector<std::string>& texts)
{
    constexpr std::size_t shown = 5;
    std::string list;
    for (std::size_t index = 0; index < std::min(texts.size(), shown); ++index) {
        list += (index == 0 ? "" : ", ") + texts[index];
    }
    return texts.empty() ? "-" : list + (texts.size() > shown ? ", ..." : "");
}

Subject otherImage(const Case& each)
{
    if (!each.is(Purpose::loadedImage) || each.facts.images.all.empty()) {
        return std::nullopt;
    }
    const std::vector<std::string> names = namesIn(each.facts.images);
    const bool there = std::any_of(names.begin(), names.end(), [&each](const std::string& name) {
        return repositoryOf(name) == each.expected.image;
    });
    return when(!there, listed(names));
}

// A processor of a family runs what the smaller ones run.
bool runs(const std::string& computer, const std::string& processor)
{
    return computer == processor || (computer == "amd64" && processor == "386") ||
           (computer == "arm64" && processor == "arm");
}

Subject otherProcessor(const Case& each)
{
    const std::string& computer = each.expected.processor;
    // What is not known may fit.
    const auto mayRun = [&computer](const std::string& processor) {
        return computer.empty() || processor.empty() || runs(computer, processor);
    };
    if (!each.is(Purpose::loadedImage)) {
        const std::string& processor = each.facts.root.processor;
        return when(!mayRun(processor), processor + " / " + computer);
    }
    // One of several that fits is enough.
    const std::vector<SavedImage>& images = each.facts.images.all;
    if (images.empty() || std::any_of(images.begin(), images.end(),
                                      [&mayRun](const SavedImage& image) { return mayRun(image.processor); })) {
        return std::nullopt;
    }
    return images.front().processor + " / " + computer;
}

Subject noProgram(const Case& each)
{
    const std::vector<SavedImage>& images = each.facts.images.all;
    const bool silent =
        std::any_of(images.begin(), images.end(), [](const SavedImage& image) { return image.namesProgram == false; });
    return when(each.is(Purpose::importedImage) || (each.is(Purpose::loadedImage) && silent), {});
}

Subject noShell(const Case& each)
{
    const ShellState shell = each.facts.root.shell;
    return when(each.wholeRoot() && (shell == ShellState::missing || shell == ShellState::circle), each.name);
}

Subject noEtc(const Case& each)
{
    return when(each.wholeRoot() && !each.facts.root.hasEtc, each.name);
}

Subject noWslConf(const Case& each)
{
    return when(each.wholeRoot() && each.is(Purpose::distribution) && !each.facts.root.hasWslConf, each.name);
}

Subject makesShortcuts(const Case& each)
{
    const RootFileSystem& root = each.facts.root;
    return when(each.wholeRoot() && each.is(Purpose::distribution) && (root.makesShortcut || root.makesTerminalProfile),
                each.name);
}

constexpr std::array rules = {
    Rule{Severity::problem, "ARCHIVE_MISSING", missing},
    Rule{Severity::problem, "ARCHIVE_NOT_USABLE", notUsable},
    Rule{Severity::problem, "ARCHIVE_CUT_OFF", damaged<Damage::cutOff>},
    Rule{Severity::problem, "ARCHIVE_DAMAGED", damaged<Damage::broken>},
    Rule{Severity::problem, "ARCHIVE_BOMB", damaged<Damage::bomb>},
    Rule{Severity::problem, "ARCHIVE_SUM_DIFFERS", otherSum},
    Rule{Severity::problem, "ARCHIVE_LEADS_OUTSIDE", leadsOutside},
    Rule{Severity::problem, "ARCHIVE_IS_IMAGE", imageForWsl},
    Rule{Severity::problem, "ARCHIVE_IS_ROOT_FS", rootForLoad},
    Rule{Severity::problem, "ARCHIVE_WITHOUT_SYSTEM", noSystem},
    Rule{Severity::problem, "ARCHIVE_WITHOUT_IMAGE", noImage},
    Rule{Severity::problem, "ARCHIVE_OTHER_IMAGE", otherImage},
    Rule{Severity::note, "ARCHIVE_IS_IMAGE", imageForImport},
    Rule{Severity::note, "ARCHIVE_PACKED_UNUSUALLY", packedUnusually},
    Rule{Severity::note, "ARCHIVE_SUM_MISSING", noSum},
    Rule{Severity::note, "ARCHIVE_END_MISSING", endMissing},
    Rule{Severity::note, "ARCHIVE_FOR_NEWER_DOCKER", onlyNewerDocker},
    Rule{Severity::note, "ARCHIVE_OTHER_PROCESSOR", otherProcessor},
    Rule{Severity::note, "ARCHIVE_WITHOUT_SHELL", noShell},
    Rule{Severity::note, "ARCHIVE_WITHOUT_ETC", noEtc},
    Rule{Severity::note, "IMAGE_WITHOUT_PROGRAM", noProgram},
    Rule{Severity::note, "ARCHIVE_WITHOUT_WSL_CONF", noWslConf},
    Rule{Severity::note, "ARCHIVE_MAKES_SHORTCUTS", makesShortcuts},
};

std::uintmax_t sum(std::uintmax_t one, std::uintmax_t other)
{
    return one > std::numeric_limits<std::uintmax_t>::max() - other ? std::numeric_limits<std::uintmax_t>::max()
                                                                    : one + other;
}

// Less than what is written in any case cannot be enough.
std::optional<std::uintmax_t> writtenBytes(const ArchiveFacts& facts)
{
    if (!facts.unpackedBytes || !canBeUnpacked(facts.kind)) {
        return std::nullopt;
    }
    return std::max(*facts.unpackedBytes, facts.fileBytes);
}

} // namespace

Purpose purposeOf(const Request& request)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return request.rootFs ? Purpose::importedImage : Purpose::loadedImage;
    }
    return Purpose::distribution;
}

std::vector<Finding> judgeArchive(const ArchiveFacts& facts, const std::string& name, const ArchiveTarget& expected)
{
    std::vector<Finding> findings;
    for (const Rule& rule : rules) {
        if (const Subject subject = rule.subjectWhen({facts, name, expected})) {
            findings.push_back({rule.severity, rule.key, *subject, "archives"});
        }
    }
    return findings;
}

const Finding* problemIn(const std::vector<Finding>& findings)
{
    const auto found = std::find_if(findings.begin(), findings.end(),
                                    [](const Finding& each) { return each.severity == Severity::problem; });
    return found == findings.end() ? nullptr : &*found;
}

// A distribution's disk has tables of its own, and takes what the files take and a tenth. Docker keeps the unpacked
// archive beside what it makes of it until that is done, and fills holes.
std::optional<std::uintmax_t> neededBytes(const ArchiveFacts& facts, Purpose purpose)
{
    constexpr std::uintmax_t disk = 200UL * 1024 * 1024;
    const std::optional<std::uintmax_t> bytes = writtenBytes(facts);
    if (!bytes) {
        return std::nullopt;
    }
    const std::uintmax_t withHoles = std::max(*bytes, facts.contentBytes);
    return purpose == Purpose::distribution ? sum(sum(*bytes, *bytes / 10), disk) : sum(withHoles, withHoles);
}

std::vector<Finding> judgeRoom(const ArchiveFacts& facts, Purpose purpose, const Volume& volume)
{
    const std::optional<std::uintmax_t> needed = neededBytes(facts, purpose);
    if (!needed || !volume.freeBytes || *volume.freeBytes >= *needed) {
        return {};
    }
    const std::string numbers =
        shortSizeText(*needed) + " / " + shortSizeText(*volume.freeBytes) + " (" + volume.folder + ")";
    if (purpose != Purpose::distribution) {
        return {{Severity::note, "DOCKER_FOLDER_SMALL", numbers, "engine"}};
    }
    const bool certain = *volume.freeBytes < *writtenBytes(facts);
    return {{certain ? Severity::problem : Severity::note, "TEMPORARY_FOLDER_SMALL", numbers, "temporaryFolder"}};
}

} // namespace kelpctl
