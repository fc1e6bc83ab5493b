#include "doctor/verdict.h"

#include "failure/causes.h"
#include "request/backend.h"
#include "request/names.h"
#include "terminal/text.h"

#include "host/messages.h"
#include "orb/lvm.h"

#include <algorithm>

namespace kelpctl {
namespace {

// The place where Windows keeps it may be empty, while a candidate has said what is wrong.
const Run& tellingRun(const WslExamination& wsl)
{
    const bool nothingThere = wsl.fallsBack() && wsl.listing.status == noSuchProgram;
    return nothingThere && !wsl.candidates.empty() ? wsl.candidates.front().answer : wsl.listing;
}

class Judge {
public:
    explicit Judge(const Examination& found) : found_(found) {}

    Judgement judge()
    {
        switch (found_.backend) {
        case Backend::wsl:
            judgeWsl();
            break;
        case Backend::docker:
            judgeDocker();
            break;
        }
        return finished();
    }

private:
    void problem(Place place, AdviceKey key, const std::string& subject = {})
    {
        findings_.push_back({Severity::problem, key, subject, place});
    }

    void note(Place place, AdviceKey key, const std::string& subject = {})
    {
        findings_.push_back({Severity::note, key, subject, place});
    }

    void judgeWsl()
    {
        const Distribution* expected = expectedDistribution(found_);
        exists_ = expected != nullptr && !isBusy(*expected);
        stopped_ = exists_ && expected->state == "Stopped" && found_.adapter.address.empty();
        judgeWslProgram();
        if (exists_) {
            return;
        }
        judgeDistributionName();
        // What an import needs is no problem for sure while the distribution may be there.
        const bool known = found_.wsl.listing.succeeded();
        judgeArchives(known ? Severity::problem : Severity::note);
        judgeTemporaryFolder(known ? Severity::problem : Severity::note);
        if (known) {
            note(Place::distribution, "DISTRIBUTION_MISSING");
        }
    }

    void judgeWslProgram()
    {
        const WslExamination& wsl = found_.wsl;
        const auto hanging = std::find_if(wsl.candidates.begin(), wsl.candidates.end(),
                                          [](const Candidate& each) { return each.fate == Fate::timedOut; });
        const bool candidateHangs = hanging != wsl.candidates.end();
        if (wsl.listing.succeeded()) {
            if (candidateHangs) {
                note(Place::wsl, "TOOL_HANGS", fileName(hanging->path));
            } else if (wsl.fallsBack()) {
                note(Place::wsl, "WSL_VERSION_UNKNOWN");
            }
        } else if (wsl.lookUp.ending == Ending::timedOut) {
            problem(Place::wsl, "TOOL_HANGS", wsl.lookUp.arguments.front());
        } else if (candidateHangs || wsl.listing.ending == Ending::timedOut) {
            problem(Place::wsl, "TOOL_HANGS", "wsl.exe");
        } else {
            const AdviceKey cause = causeOfWslStatus(tellingRun(wsl));
            problem(Place::wsl, cause.empty() ? AdviceKey("WSL_NOT_USABLE") : cause);
        }
    }

    void judgeDistributionName()
    {
        if (!isWslName(found_.image)) {
            problem(Place::image, "WSL_NAME_INVALID");
        }
        for (const Distribution& distribution : found_.wsl.distributions) {
            if (distribution.name == found_.image) {
                problem(Place::distribution, "WSL_BUSY");
            } else if (lowered(distribution.name) == lowered(found_.image)) {
                problem(Place::distribution, "WSL_NAME_TAKEN");
            }
        }
    }

    void judgeArchives(Severity severity)
    {
        const auto taken = std::find_if(found_.archives.begin(), found_.archives.end(),
                                        [](const Archive& archive) { return archive.taken; });
        if (taken == found_.archives.end()) {
            const bool rooted = found_.rootExists;
            findings_.push_back({severity, rooted ? AdviceKey("ARCHIVE_NOT_INSTALLED") : AdviceKey("ROOT_MISSING"),
                                 rooted ? archiveName(wordsOf(found_.backend).archives.preferred) : found_.root.value,
                                 Place::archives});
            return;
        }
        switch (taken->kind) {
        case ArchiveKind::tar:
        case ArchiveKind::gzip:
        case ArchiveKind::xz:
        case ArchiveKind::bzip2:
            return;
        case ArchiveKind::zstd:
            note(Place::archives, "ARCHIVE_PACKED_UNUSUALLY", taken->name);
            return;
        default:
            // It is not looked at when the registry has the image.
            findings_.push_back(
                {pulls() ? Severity::note : severity, "ARCHIVE_NOT_USABLE", taken->name, Place::archives});
        }
    }

    bool pulls() const { return found_.backend == Backend::docker && found_.pullsFromRegistry; }

    void judgeTemporaryFolder(Severity severity)
    {
        const TemporaryFolder& temporary = found_.temporary;
        if (!temporary.exists || !temporary.writable) {
            findings_.push_back({severity, "TEMPORARY_FOLDER_NOT_USABLE", temporary.path, Place::temporary});
            return;
        }
        for (const Archive& archive : found_.archives) {
            if (archive.taken && temporary.freeBytes && *temporary.freeBytes < archive.size) {
                note(Place::temporary, "TEMPORARY_FOLDER_SMALL");
            }
        }
    }

    void judgeDocker()
    {
        if (!isDockerName(found_.image)) {
            problem(Place::image, "DOCKER_NAME_INVALID");
        }
        if (judgeClient() && judgeEngine()) {
            judgeContainer();
        }
        if (exists_) {
            return;
        }
        const bool known = found_.docker.imageListing.succeeded();
        judgeArchives(known ? Severity::problem : Severity::note);
        if (known) {
            note(Place::dockerImage, "IMAGE_MISSING");
        }
    }

    bool judgeClient()
    {
        const DockerExamination& docker = found_.docker;
        if (docker.lookUp.ending == Ending::timedOut) {
            problem(Place::client, "TOOL_HANGS", docker.lookUp.arguments.front());
        } else if (!docker.searchFailure.empty()) {
            problem(Place::client, "FILE_NOT_ACCESSIBLE", docker.searchFailure);
        } else if (!docker.clientExists) {
            problem(Place::client, "DOCKER_NOT_AVAILABLE");
        } else if (docker.engine.answer.ending == Ending::notStarted) {
            problem(Place::client, "PROGRAM_NOT_STARTED", docker.engine.answer.error);
        } else {
            return true;
        }
        return false;
    }

    bool judgeEngine()
    {
        const DockerExamination& docker = found_.docker;
        for (const Run* reply : {&docker.engine.answer, &docker.imageListing, &docker.containerListing}) {
            if (reply->ending == Ending::timedOut) {
                problem(Place::engine, "TOOL_HANGS", fileName(docker.client));
                return false;
            }
        }
        if (!docker.engine.reachable()) {
            problem(Place::engine, "DOCKER_ENGINE_NOT_REACHABLE");
            return false;
        }
        if (!docker.imageListing.succeeded()) {
            problem(Place::dockerImage, "DOCKER_REFUSED");
            return false;
        }
        if (docker.engine.system == "windows") {
            problem(Place::engine, "DOCKER_RUNS_WINDOWS_CONTAINERS");
        }
        return true;
    }

    void judgeContainer()
    {
        exists_ = expectedImage(found_) != nullptr;
        const DockerContainer* container = expectedContainer(found_);
        if (container == nullptr && exists_ && found_.docker.containerListing.succeeded()) {
            note(Place::container, "CONTAINER_MISSING");
        } else if (container != nullptr && container->state != "running") {
            note(Place::container,
                 container->state == "paused" ? AdviceKey("CONTAINER_PAUSED") : AdviceKey("CONTAINER_NOT_RUNNING"));
        }
    }

    Judgement finished()
    {
        std::stable_partition(findings_.begin(), findings_.end(),
                              [](const Finding& finding) { return finding.severity == Severity::problem; });
        if (findings_.empty()) {
            note(Place::none, "ENVIRONMENT_READY");
        }
        Judgement judgement{Verdict::ready, findings_};
        if (judgement.problems() > 0) {
            judgement.verdict = Verdict::blocked;
        } else if (exists_) {
            judgement.verdict = stopped_ ? Verdict::wouldStart : Verdict::exists;
        }
        return judgement;
    }

    const Examination& found_;
    std::vector<Finding> findings_;
    bool exists_ = false;
    bool stopped_ = false;
};

} // namespace

const char* severityName(Severity severity)
{
    return severity == Severity::problem ? "problem" : "note";
}

// Errors of the library have their texts in the host's catalogue.
std::string findingText(const Finding& finding, Names names)
{
    const Advice& advice = adviceFor(finding.key);
    if (*advice.text == '\0') {
        return foundation::core::message::localisedText({orb::container_support::catalogue, finding.key.text(), {}});
    }
    names.subject = finding.subject;
    return adviceText(advice, names);
}

std::string findingNextStep(const Finding& finding, Names names)
{
    names.subject = finding.subject;
    return adviceNextStep(adviceFor(finding.key), names);
}

std::size_t Judgement::problems() const
{
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::problem;
    }));
}

Judgement judge(const Examination& found)
{
    return Judge(found).judge();
}

const Distribution* expectedDistribution(const Examination& found)
{
    const auto& all = found.wsl.distributions;
    const auto expected =
        std::find_if(all.begin(), all.end(), [&found](const Distribution& each) { return each.name == found.image; });
    return expected == all.end() ? nullptr : &*expected;
}

const DockerImage* expectedImage(const Examination& found)
{
    const auto& all = found.docker.images;
    const auto expected =
        std::find_if(all.begin(), all.end(), [&found](const DockerImage& each) { return each.name() == found.image; });
    return expected == all.end() ? nullptr : &*expected;
}

const DockerContainer* expectedContainer(const Examination& found)
{
    const auto& all = found.docker.containers;
    const auto expected = std::find_if(all.begin(), all.end(),
                                       [&found](const DockerContainer& each) { return each.name == found.container; });
    return expected == all.end() ? nullptr : &*expected;
}

} // namespace kelpctl
