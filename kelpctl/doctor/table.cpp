#include "doctor/table.h"

#include "request/backend.h"
#include "terminal/table.h"
#include "terminal/text.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

// Others than the expected ones are listed up to this many.
constexpr std::size_t othersShown = 10;
// Of what a failed program printed.
constexpr std::size_t linesShown = 4;

std::string secondsText(std::chrono::seconds limit)
{
    return std::to_string(limit.count()) + " s";
}

std::string statusAndBits(const std::optional<std::int32_t>& status)
{
    return status ? "status " + std::to_string(*status) + " (" + hexadecimal(*status) + ")" : std::string("no status");
}

std::string endingText(const Run& run, std::chrono::seconds timeLimit)
{
    switch (run.ending) {
    case Ending::exited:
        return run.succeeded() ? "it answers" : "it failed with " + statusAndBits(run.status);
    case Ending::notStarted:
        return "it could not be started";
    case Ending::timedOut:
        return "it did not answer within " + secondsText(timeLimit);
    case Ending::notAsked:
    case Ending::interrupted:
        break;
    }
    return "not asked";
}

std::string plural(std::size_t count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// Builds the table section by section.
class Doctor {
public:
    Doctor(const Examination& found, const Judgement& judgement, const Names& names, bool colours)
        : found_(found), judgement_(judgement), names_(names), table_(colours)
    {
    }

    std::vector<std::string> lines()
    {
        showEnvironment();
        showWsl();
        showDocker();
        showArchives();
        showTemporaryFolder();
        showVerdict();
        showNextSteps();
        return table_.take();
    }

private:
    // What is right is marked only where it counts.
    Mark mark(Place place, bool counts) const
    {
        Mark worst = counts ? Mark::ok : Mark::none;
        for (const Finding& finding : judgement_.findings) {
            if (finding.place == place) {
                worst = std::max(worst, finding.severity == Severity::problem ? Mark::problem : Mark::note);
            }
        }
        return worst;
    }

    Mark wslMark(Place place, bool known = true) const { return mark(place, found_.backend == Backend::wsl && known); }
    Mark dockerMark(Place place, bool known = true) const
    {
        return mark(place, found_.backend == Backend::docker && known);
    }

    void showSaid(const Run& run) { showSaid(run.output + "\n" + run.error); }

    void showSaid(const std::string& text)
    {
        std::vector<std::string> said = displayLines(text);
        std::erase(said, std::string());
        for (std::size_t index = 0; index < std::min(said.size(), linesShown); ++index) {
            table_.more("    " + said[index]);
        }
        if (said.size() > linesShown) {
            table_.more("    ...");
        }
    }

    void showEnvironment()
    {
        table_.section("environment");
        table_.row(Mark::none, "backend", wordsOf(found_.backend).title + (": " + backendReason()));
        table_.row(Mark::none, "release",
                   settingText(found_.release, "none: neither --release nor KORVANE_RELEASE names one", "--release",
                               "KORVANE_RELEASE", ""));
        table_.row(Mark::none, "installation root",
                   settingText(found_.root, "not known", "--root", "KORVANE_ROOT", "where kelpctl is installed"));
        table_.row(mark(Place::image, true), "name",
                   std::string("the ") + wordsOf(found_.backend).image + " " + found_.image);
        table_.row(Mark::none, "container", containerText());
    }

    std::string containerText() const
    {
        switch (found_.backend) {
        case Backend::wsl:
            break;
        case Backend::docker:
            return found_.container;
        }
        return "WSL needs none";
    }

    std::string sectionTitle(Backend backend) const
    {
        const std::string title = wordsOf(backend).title;
        return backend == found_.backend ? title : title + " (not the backend)";
    }

    std::string backendReason() const
    {
        switch (found_.backendSetting.source) {
        case Source::flag:
            return found_.backendSetting.value + " was given";
        case Source::variable:
            return "USE_WSL is \"" + found_.backendSetting.value + "\"";
        case Source::builtIn:
            break;
        }
        return "USE_WSL is not set";
    }

    static std::string settingText(const Setting& setting, const char* none, const char* flag, const char* variable,
                                   const char* builtIn)
    {
        if (setting.value.empty()) {
            return none;
        }
        const char* source = setting.source == Source::flag       ? flag
                             : setting.source == Source::variable ? variable
                                                                  : builtIn;
        return setting.value + " (" + source + ")";
    }

    void showCandidates(const Run& lookUp, const std::vector<Candidate>& candidates)
    {
        std::string label = "candidates";
        for (const Candidate& candidate : candidates) {
            table_.row(Mark::none, label, candidate.path);
            table_.more("  " + fateText(candidate, found_.timeLimit));
            if (candidate.fate == Fate::failed) {
                showSaid(candidate.answer);
            }
            label.clear();
        }
        if (candidates.empty()) {
            table_.row(Mark::none, label, "none: " + lookUpText(lookUp));
        }
    }

    std::string lookUpText(const Run& lookUp) const
    {
        if (!lookUp.asked()) {
            return "not looked for";
        }
        const std::string command = "\"" + shortCommand(lookUp.arguments) + "\"";
        return lookUp.succeeded() ? command + " printed nothing"
                                  : command + ": " + endingText(lookUp, found_.timeLimit);
    }

    void showWsl()
    {
        const WslExamination& wsl = found_.wsl;
        table_.section(sectionTitle(Backend::wsl));
        table_.row(wslMark(Place::wsl), "wsl.exe",
                   wsl.executable.empty() ? "not known" : wsl.executable + (wsl.fallsBack() ? fallbackText : ""));
        showCandidates(wsl.lookUp, wsl.candidates);
        table_.row(Mark::none, "version", wsl.version.empty() ? "not known" : wsl.version);
        showDistributions();
        showAdapter();
    }

    void showDistributions()
    {
        const WslExamination& wsl = found_.wsl;
        if (!wsl.listing.succeeded()) {
            table_.row(Mark::none, "distributions", "not known: " + endingText(wsl.listing, found_.timeLimit));
            showSaid(wsl.listing);
            return;
        }
        const Distribution* expected = expectedDistribution(found_);
        table_.row(wslMark(Place::distribution), "distribution",
                   found_.image + ": " + (expected == nullptr ? "missing" : distributionText(*expected)));
        if (!wsl.table.succeeded() && !wsl.distributions.empty()) {
            table_.more("states are not known: " + endingText(wsl.table, found_.timeLimit));
        }
        std::vector<std::string> others;
        for (const Distribution& each : wsl.distributions) {
            if (&each != expected) {
                others.push_back(each.name + ": " + distributionText(each));
            }
        }
        showOthers("other distributions", others);
    }

    static std::string distributionText(const Distribution& distribution)
    {
        std::string text = distribution.state.empty() ? "state not known" : distribution.state;
        text += distribution.version == 0 ? "" : ", WSL " + std::to_string(distribution.version);
        return text + (distribution.isDefault ? ", the default one" : "");
    }

    void showOthers(const std::string& label, const std::vector<std::string>& others)
    {
        table_.row(Mark::none, label, others.empty() ? "none" : others.front());
        for (std::size_t index = 1; index < std::min(others.size(), othersShown); ++index) {
            table_.more(others[index]);
        }
        if (others.size() > othersShown) {
            table_.more("and " + std::to_string(others.size() - othersShown) + " more; --json shows all");
        }
    }

    void showAdapter()
    {
        const Adapter& adapter = found_.adapter;
        if (!adapter.failure.empty()) {
            table_.row(Mark::none, "adapter address", "not known: " + adapter.failure);
        } else if (adapter.address.empty()) {
            table_.row(Mark::none, "adapter address", "none");
            table_.more("  looked for: \"(WSL)\" in the name, \"Virtual\" in the description, and an IPv4 address");
        } else {
            table_.row(Mark::none, "adapter address", adapter.address + " (" + adapter.name + ")");
        }
        for (const std::string& name : adapter.passedOver) {
            table_.more("  passed over: " + name);
        }
    }

    void showDocker()
    {
        const DockerExamination& docker = found_.docker;
        table_.section(sectionTitle(Backend::docker));
        const std::string missing = docker.searchFailure.empty() ? "not found" : docker.searchFailure;
        table_.row(dockerMark(Place::client), "docker.exe", docker.client.empty() ? missing : docker.client);
        showCandidates(docker.lookUp, docker.candidates);
        if (!docker.clientExists) {
            return;
        }
        table_.row(Mark::none, "client version",
                   docker.engine.clientVersion.empty() ? "not known" : docker.engine.clientVersion);
        showEngine();
        if (docker.engine.reachable()) {
            showImages();
            showContainers();
        }
        if (found_.pullsFromRegistry) {
            table_.row(Mark::none, "registry", "asked before the archive is used: USE_DOCKER_REPOSITORY is \"1\"");
        }
    }

    void showEngine()
    {
        const DockerExamination& docker = found_.docker;
        if (docker.engine.reachable()) {
            const std::string containers = docker.engine.system.empty() ? "" : " for " + docker.engine.system;
            table_.row(dockerMark(Place::engine), "engine", "version " + docker.engine.version + containers);
            return;
        }
        table_.row(dockerMark(Place::engine), "engine",
                   "cannot be reached: " + endingText(docker.engine.answer, found_.timeLimit));
        showSaid(docker.engine.answer.error);
    }

    void showImages()
    {
        const DockerExamination& docker = found_.docker;
        if (!docker.imageListing.succeeded()) {
            table_.row(dockerMark(Place::dockerImage), "images",
                       "not known: " + endingText(docker.imageListing, found_.timeLimit));
            showSaid(docker.imageListing);
            return;
        }
        const DockerImage* expected = expectedImage(found_);
        table_.row(dockerMark(Place::dockerImage), "image",
                   expected == nullptr ? found_.image + ": missing" : imageText(*expected));
        std::vector<std::string> others;
        for (const DockerImage& each : docker.images) {
            if (&each != expected) {
                others.push_back(imageText(each));
            }
        }
        showOthers("other images", others);
    }

    static std::string imageText(const DockerImage& image)
    {
        return image.repository + ": tag " + image.tag + ", " + image.size;
    }

    static std::string containerLine(const DockerContainer& container)
    {
        return container.name + ": " + container.state + ", of the image " + container.image;
    }

    void showContainers()
    {
        const DockerExamination& docker = found_.docker;
        if (!docker.containerListing.succeeded()) {
            table_.row(Mark::none, "containers", "not known: " + endingText(docker.containerListing, found_.timeLimit));
            showSaid(docker.containerListing);
            return;
        }
        const DockerContainer* expected = expectedContainer(found_);
        const bool running = expected != nullptr && expected->state == "running";
        table_.row(dockerMark(Place::container, running), "container",
                   expected == nullptr ? found_.container + ": missing" : containerLine(*expected));
        std::vector<std::string> others;
        for (const DockerContainer& each : docker.containers) {
            if (&each != expected) {
                others.push_back(containerLine(each));
            }
        }
        showOthers("other containers", others);
    }

    void showArchives()
    {
        table_.section("archives");
        if (!found_.archiveFolderFailure.empty()) {
            table_.row(mark(Place::archives, false), "folder", "not known: " + found_.archiveFolderFailure);
            return;
        }
        table_.row(mark(Place::archives, false), "folder", found_.archiveFolder);
        for (const Archive& archive : found_.archives) {
            table_.row(archive.taken ? mark(Place::archives, true) : Mark::none, archive.name, archiveText(archive));
        }
    }

    static std::string archiveText(const Archive& archive)
    {
        if (!archive.present) {
            return kindName(archive.kind);
        }
        return sizeText(archive.size) + ", " + kindName(archive.kind) +
               (archive.taken ? "; \"setup\" would take this one" : "");
    }

    void showTemporaryFolder()
    {
        const TemporaryFolder& temporary = found_.temporary;
        table_.section("temporary folder");
        table_.row(wslMark(Place::temporary), "folder", temporary.path.empty() ? "not known" : temporary.path);
        table_.row(Mark::none, "state",
                   !temporary.exists     ? "missing"
                   : !temporary.writable ? "may not be written to"
                                         : "may be written to");
        table_.row(Mark::none, "free", temporary.freeBytes ? sizeText(*temporary.freeBytes) : "not known");
    }

    void showVerdict()
    {
        table_.section("verdict");
        const std::string setup = "\"" + names_.invocation + " setup\"";
        const std::size_t problems = judgement_.problems();
        switch (judgement_.verdict) {
        case Verdict::blocked:
            table_.text(Mark::problem, (problems == 1 ? "One thing" : plural(problems, "thing")) + " would keep " +
                                           setup + " from working.");
            break;
        case Verdict::exists:
            table_.text(Mark::ok, setup + " would do nothing: " + found_.image + " exists.");
            break;
        case Verdict::wouldStart:
            table_.text(Mark::ok, setup + " would start " + found_.image + ", which exists.");
            break;
        case Verdict::ready:
            table_.text(Mark::ok, "Nothing would keep " + setup + " from working.");
            break;
        }
    }

    void showNextSteps()
    {
        table_.section("next steps");
        for (const Finding& finding : judgement_.findings) {
            table_.text(finding.severity == Severity::problem ? Mark::problem : Mark::note,
                        findingText(finding, names_));
            table_.text(Mark::none, findingNextStep(finding, names_));
        }
    }

    static constexpr char fallbackText[] = " (where Windows keeps it: no candidate was taken)";

    const Examination& found_;
    const Judgement& judgement_;
    const Names& names_;
    TableLines table_;
};

} // namespace

std::string fateText(const Candidate& candidate, std::chrono::seconds timeLimit)
{
    const std::string despite = candidate.taken ? "taken all the same, since no other is better: " : "passed over: ";
    switch (candidate.fate) {
    case Fate::answers:
        return "taken: it answers \"-v\"";
    case Fate::failed:
        return "passed over: \"-v\" failed with " + statusAndBits(candidate.answer.status);
    case Fate::notStarted:
        return "passed over: it could not be started";
    case Fate::timedOut:
        return "passed over: it did not answer \"-v\" within " + secondsText(timeLimit);
    case Fate::notAsked:
    case Fate::notLookedAt:
        break;
    case Fate::regularFile:
        return "taken: it is the first that is a file";
    case Fate::hostsOwn:
        return despite + "it lies in bin\\win64, among the host's own programs";
    case Fate::missing:
        return despite + "it does not exist";
    case Fate::link:
        return despite + "it is a link";
    case Fate::notAFile:
        return despite + "it is no file";
    case Fate::notReadable:
        return "it cannot be looked at, which ends the search";
    }
    return "not looked at: the search had ended";
}

std::string sizeText(std::uintmax_t bytes)
{
    constexpr std::array units = {"KiB", "MiB", "GiB", "TiB"};
    constexpr std::uintmax_t step = 1024;
    std::string exact = plural(bytes, "byte");
    std::uintmax_t unit = 1;
    const char* name = nullptr;
    for (const char* next : units) {
        if (bytes / unit >= step) {
            unit *= step;
            name = next;
        }
    }
    if (name == nullptr) {
        return exact;
    }
    const std::uintmax_t tenths = bytes / unit * 10 + (bytes % unit * 10 + unit / 2) / unit;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " " + name + " (" + exact + ")";
}

std::vector<std::string> doctorTable(const Examination& found, const Judgement& judgement, const Names& names,
                                     bool colours)
{
    return Doctor(found, judgement, names, colours).lines();
}

} // namespace kelpctl
