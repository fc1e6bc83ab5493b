#include "commands/support.h"

#include "asking/disk.h"
#include "asking/limited.h"
#include "asking/wsl_config.h"
#include "commands/work.h"
#include "doctor/doctor.h"
#include "failure/failure.h"
#include "failure/kept_failure.h"
#include "terminal/json.h"
#include "terminal/registrations.h"
#include "terminal/text.h"

#include "host/environment.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace kelpctl {
namespace {

namespace json = boost::json;

constexpr std::chrono::seconds probeLimit{5};

constexpr char contentsFile[] = "contents.txt";

constexpr char contentsHead[] =
    "A report of kelpctl, for support. Nothing has been sent; look through it before you do.\n\n"
    "Masked as \"***\": how the user and the computer are called, wherever that stands as a word; values that were "
    "given\n"
    "with \"-e\", and what stands behind the options in AUX_DOCKER_ARGS (of fewer than four letters only where they "
    "stand\n"
    "alone); what stands in front of \"@\" in an address. Of .wslconfig only values of settings that WSL knows are in "
    "it, of\n"
    "the environment only the variables of environment.json. Of what a program printed there is the first MiB.\n\n";

// Variables that decide what the library and the programs do.
constexpr std::array shownVariables = {"USE_WSL",     "KORVANE_ROOT",   "KORVANE_RELEASE", "USE_DOCKER_REPOSITORY",
                                       "DOCKER_HOST", "DOCKER_CONTEXT", "WSL_UTF8",        "TEMP",
                                       "TMP",         "TMPDIR",         "SESSIONNAME"};

// What wsl.exe and Docker are asked besides what the doctor asks. Answers are in the language of the system.
struct Probe {
    const char* name;
    bool wsl;
    std::vector<std::string> arguments;
};

const std::vector<Probe>& probes()
{
    static const std::vector<Probe> all = {
        {"wsl-version", true, {"--version"}},
        {"wsl-status", true, {"--status"}},
        {"wsl-list", true, {"--list", "--all", "--verbose"}},
        {"docker-version", false, {"version", "--format", "{{json .}}"}},
        {"docker-info",
         false,
         {"info", "--format", "{{.OperatingSystem}}, {{.OSType}}, {{.Architecture}}, {{.Driver}}"}},
        {"docker-contexts", false, {"context", "ls", "--format", "{{.Current}} {{.Name}} {{.DockerEndpoint}}"}}};
    return all;
}

// Collects the files, each masked on its way.
class Collection {
public:
    explicit Collection(const Request& request) : mask_(maskFor(request)) {}

    void add(const std::string& name, const std::string& about, const json::value& value)
    {
        addAsItIs(name, about, jsonLine(mask_.appliedToTexts(value)) + '\n');
    }
    void addBytes(const std::string& name, const std::string& about, std::string_view bytes)
    {
        addAsItIs(name, about, mask_.beginningOf(bytes));
    }

    std::vector<ZipEntry> take()
    {
        entries_.push_back({contentsFile, contentsHead + list_});
        return std::move(entries_);
    }

private:
    void addAsItIs(const std::string& name, const std::string& about, std::string content)
    {
        list_ += name + ": " + about + ", " + std::to_string(content.size()) + " bytes\n";
        entries_.push_back({name, std::move(content)});
    }

    Mask mask_;
    std::string list_;
    std::vector<ZipEntry> entries_;
};

void addVersions(Collection& all)
{
    all.add("versions.json", "kelpctl",
            json::object{{"kelpctl", libzqorb_lvm_version},
                         {"built", libzqorb_lvm_build_date},
                         {"time", isoTime(std::chrono::system_clock::now())}});
}

void addEnvironment(Collection& all)
{
    using foundation::core::env::variable;
    json::object variables;
    for (const char* name : shownVariables) {
        variables[name] = orNull(variable(name));
    }
    const std::optional<std::string> further = variable("AUX_DOCKER_ARGS");
    variables["AUX_DOCKER_ARGS"] = further ? json::value(maskedDockerArguments(*further)) : nullptr;
    all.add("environment.json", "variables", variables);
}

void addRegistrations(Collection& all, std::chrono::seconds timeLimit)
{
    constexpr std::array states = {"present", "gone", "unreachable"};
    json::array list;
    for (const Registration& registration : registrations()) {
        const std::optional<Disk> disk =
            within(timeLimit, [name = registration.name] { return diskOf(name); }).value_or(std::nullopt);
        list.push_back(
            json::object{{"name", registration.name},
                         {"installed", registration.installed},
                         {"disk", disk ? json::value(disk->path) : nullptr},
                         {"state", disk ? json::value(states.at(static_cast<std::size_t>(disk->state))) : nullptr},
                         {"bytes", disk ? orNull(disk->bytes) : nullptr}});
    }
    all.add("distributions.json", "what WSL has written down of this user's distributions", list);
}

void addWslConfig(Collection& all, const Examination& found)
{
    const WslConfigFile file = found.wsl.config.value_or(WslConfigFile());
    json::object settings;
    for (const auto& [name, value] : file.config.known) {
        settings[name] = value;
    }
    all.add("wslconfig.json", "settings of WSL",
            json::object{{"exists", file.exists}, {"settings", settings}, {"unknownLines", file.config.unknown}});
}

void addKeptFailure(Collection& all)
{
    const std::optional<KeptFailure> kept = keptFailure();
    all.add("last-failure.json", "the last failure of a program that kelpctl told, null for none",
            kept ? kept->told : json::value());
    if (kept) {
        all.addBytes("last-failure.stdout", "what that program printed", kept->output);
        all.addBytes("last-failure.stderr", "what it printed on standard error", kept->error);
    }
}

void addProbes(Collection& all, const Context& context, const Examination& found)
{
    for (const Probe& probe : probes()) {
        const std::string& program = probe.wsl ? found.wsl.executable : found.docker.client;
        if (program.empty()) {
            continue;
        }
        std::vector<std::string> arguments = {program};
        arguments.insert(arguments.end(), probe.arguments.begin(), probe.arguments.end());
        const Run run = ask(context.programs, arguments);
        const std::string folder = std::string("programs/") + probe.name;
        all.add(folder + ".json", "how it was asked, and how it ended", runObject(run));
        all.addBytes(folder + ".stdout", "what it printed", run.captured);
        all.addBytes(folder + ".stderr", "what it printed on standard error", run.capturedError);
    }
}

// "kelpctl-report-20261121T101502.zip".
std::string defaultName()
{
    std::string time = isoTime(std::chrono::system_clock::now());
    std::erase_if(time, [](char c) { return c == '-' || c == ':'; });
    return "kelpctl-report-" + time.substr(0, time.find('.')) + ".zip";
}

std::filesystem::path pathOf(const std::string& name)
{
    return foundation::core::text::cvt_utf8_ustring(name);
}

// A file that is there already is somebody's.
void requireNew(const std::string& name)
{
    std::error_code error;
    if (std::filesystem::exists(pathOf(name), error) || error) {
        throw Failure("REPORT_NOT_WRITTEN", name);
    }
}

void write(const std::string& name, const std::string& content)
{
    std::ofstream file(pathOf(name), std::ios::binary);
    file << content << std::flush;
    if (!file) {
        throw Failure("REPORT_NOT_WRITTEN", name);
    }
}

} // namespace

std::vector<ZipEntry> reportEntries(const Context& context)
{
    Request request = context.request;
    request.timeLimit = probeLimit;
    const Context limited{request, context.console, context.programs, context.journal};
    Collection all(request);
    const Examination found = examine(limited);
    addVersions(all);
    all.add("doctor.json", "what \"kelpctl doctor --json\" has as its result",
            describe(found, judge(found), namesOf(request), false).object);
    addKeptFailure(all);
    addEnvironment(all);
    addRegistrations(all, found.timeLimit);
    addWslConfig(all, found);
    addProbes(all, limited, found);
    return all.take();
}

Outcome report(const Context& context)
{
    const std::string name = context.request.archive.empty() ? defaultName() : context.request.archive;
    requireNew(name);
    std::vector<ZipEntry> entries;
    work(context, [&] { entries = reportEntries(context); });
    write(name, zipOf(entries));
    return {
        {"The report is in " + name + ". Nothing was sent; " + contentsFile + " in it says what it holds, and what was",
         "masked. Look through it, then send it to support."},
        json::object{{"file", name}},
        {}};
}

} // namespace kelpctl
