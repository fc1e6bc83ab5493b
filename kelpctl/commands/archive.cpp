#include "commands/archive.h"

#include "archive/description.h"
#include "archive/judgement.h"
#include "archive/reading.h"
#include "asking/docker.h"
#include "asking/volume.h"
#include "asking/wsl.h"
#include "commands/work.h"
#include "doctor/archives.h"
#include "doctor/check.h"
#include "failure/failure.h"
#include "request/backend.h"
#include "terminal/interruption.h"
#include "terminal/platform.h"
#include "terminal/text.h"

#include "lvm/files.h"
#include "lvm/rules.h"

#include "host/environment.h"
#include "orb/lvm.h"

#include <algorithm>
#include <atomic>
#include <optional>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

ArchiveTarget targetOf(const Request& request)
{
    return {purposeOf(request), namesOf(request).image, processorName()};
}

Volume targetVolume(const Context& context, Purpose purpose)
{
    if (purpose == Purpose::distribution) {
        return temporaryVolume();
    }
    const std::string client = orb::lvm::getContainerExecutablePath();
    // The room is a note: an engine that hangs is not waited for.
    context.journal.limitEachRun(context.request.timeLimit);
    Volume volume = client.empty() ? Volume() : engineVolume(context.programs, client);
    context.journal.limitEachRun(std::nullopt);
    return volume;
}

std::vector<Finding> findingsAbout(const ArchiveFacts& facts, const std::string& name, const ArchiveTarget& expected,
                                   const Volume& volume)
{
    std::vector<Finding> findings = judgeArchive(facts, name, expected);
    const std::vector<Finding> room = judgeRoom(facts, expected.purpose, volume);
    findings.insert(findings.end(), room.begin(), room.end());
    std::stable_partition(findings.begin(), findings.end(),
                          [](const Finding& finding) { return finding.severity == Severity::problem; });
    return findings;
}

struct Looked {
    ArchiveFacts facts;
    Volume volume;
};

// Reads all of it, and shows how far it is; then looks at where it would go.
Looked lookAtAll(const Context& context, const std::filesystem::path& file, Purpose purpose)
{
    Looked looked;
    std::atomic<std::uintmax_t> done = 0;
    const std::uintmax_t all = lookAtFile(file).fileBytes;
    Reading reading;
    reading.watch = [&done](std::uintmax_t packedBytes) {
        done = packedBytes;
        if (interrupted()) {
            throw Failure("INTERRUPTED");
        }
    };
    const auto progress = [&done, all] {
        const std::uintmax_t percent = all < 100 ? 100 : std::min<std::uintmax_t>(done / (all / 100), 100);
        return shortSizeText(done) + " of " + shortSizeText(all) + " (" + std::to_string(percent) + " %)";
    };
    const auto look = [&] {
        looked.facts = readArchive(file, reading);
        looked.volume = targetVolume(context, purpose);
    };
    work(context, look, progress);
    return looked;
}

// The one that the library takes. Nothing when there is none.
std::optional<std::filesystem::path> chosenArchive(const Request& request, Purpose purpose)
{
    if (!request.archive.empty()) {
        return rules::toPath(request.archive);
    }
    const rules::DefaultArchives& names =
        purpose == Purpose::importedImage ? rules::rootFsArchives : traitsOf(selectedBackend()).archives;
    const std::filesystem::path folder(orb::lvm::getContainerTarsDirectory());
    for (const Archive& archive : lookAtArchives(folder, names)) {
        if (archive.taken) {
            return folder / rules::toPath(archive.name);
        }
    }
    return std::nullopt;
}

bool environmentExists(const Context& context, const std::string& image)
{
    const std::string client = orb::lvm::getContainerExecutablePath();
    switch (selectedBackend()) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return imageExists(context.programs, client, image);
    }
    const std::vector<Distribution> all = askDistributions(context.programs, client).all;
    return std::any_of(all.begin(), all.end(), [&image](const Distribution& each) { return each.name == image; });
}

// A registry that has the image makes the archive unnecessary.
bool mayBePulled()
{
    const std::optional<std::string> value = foundation::core::env::variable(rules::registryVariable);
    return selectedBackend() == Backend::docker && rules::isOne(value ? value->c_str() : nullptr);
}

} // namespace

Outcome archive(const Context& context)
{
    const Request& request = context.request;
    const Names names = namesOf(request);
    const ArchiveTarget expected = targetOf(request);
    const auto [facts, volume] = lookAtAll(context, rules::toPath(request.archive), expected.purpose);
    const std::vector<Finding> findings = findingsAbout(facts, request.archive, expected, volume);
    const bool good = problemIn(findings) == nullptr;

    TableLines table(context.console.outColours);
    printArchive(facts, request.archive, expected.purpose, volume, table);
    table.section("verdict");
    table.text(good ? Mark::ok : Mark::problem,
               std::string("The ") + traitsOf(selectedBackend()).image + " " + names.image +
                   (good ? " can be created from it." : " cannot be created from it."));
    if (!findings.empty()) {
        printNextSteps(findings, names, table);
    }
    boost::json::object object = archiveObject(facts, request.archive, expected.purpose, volume);
    object["findings"] = listOf(true, findings, [&names](const Finding& each) { return findingObject(each, names); });
    Outcome outcome{table.take(), std::move(object), {}};
    if (!good) {
        outcome.failure = makeReport(Failure("ARCHIVE_HAS_PROBLEMS", request.archive), {}, std::nullopt, request);
    }
    return outcome;
}

void requireUsableArchive(const Context& context)
{
    const ArchiveTarget expected = targetOf(context.request);
    const std::optional<std::filesystem::path> file =
        context.request.force || mayBePulled() ? std::nullopt : chosenArchive(context.request, expected.purpose);
    if (!file) {
        return;
    }
    const ArchiveFacts facts = readArchive(*file, quickLook());
    if (facts.kind == ArchiveKind::missing) {
        return;
    }
    const std::string name = utf8OrEmpty(file->u16string());
    // Asking the engine takes time, and the room on its disk is never a problem for sure.
    const Volume volume = expected.purpose == Purpose::distribution ? temporaryVolume() : Volume();
    const std::vector<Finding> findings = findingsAbout(facts, name, expected, volume);
    const Finding* problem = problemIn(findings);
    if (problem != nullptr && !environmentExists(context, expected.image)) {
        throw Failure("ARCHIVE_REFUSED", problem->subject, problem->key);
    }
}

} // namespace kelpctl
