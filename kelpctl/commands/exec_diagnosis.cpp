#include "commands/exec_diagnosis.h"

#include "asking/disk.h"
#include "asking/docker.h"
#include "asking/wsl.h"
#include "failure/causes.h"
#include "request/backend.h"
#include "request/request.h"
#include "terminal/interruption.h"
#include "terminal/platform.h"

#include "lvm/commands.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

Report reportOn(const Run& inside, AdviceKey identifier, AdviceKey cause, const Context& context)
{
    const std::string& program = context.request.program.front();
    Report report = makeReport(Failure(identifier, program), cause, inside, context.request);
    report.status = *inside.status;
    return report;
}

// What wsl.exe said, to this or to a further question, is the evidence.
Report reportOnWsl(const Run& inside, AdviceKey cause, const Run& evidence, const Context& context)
{
    Report report =
        makeReport(Failure("WSL_FAILED", context.request.program.front()), cause, evidence, context.request);
    report.status = *inside.status;
    return report;
}

// What is wrong with the distribution when nothing is wrong with WSL; empty for nothing.
AdviceKey causeOfDistribution(const DistributionList& distributions, const std::string& name)
{
    const auto found = std::find_if(distributions.all.begin(), distributions.all.end(),
                                    [&name](const Distribution& distribution) { return distribution.name == name; });
    if (found == distributions.all.end()) {
        return "DISTRIBUTION_MISSING";
    }
    return isBusy(*found) ? AdviceKey("WSL_BUSY") : AdviceKey();
}

// wsl.exe has the status 1 for a program that does not exist, as many a program has for reasons of its own, and so has what
// Windows keeps in the place of wsl.exe.
std::optional<Report> missingProgram(const Run& inside, const Context& context)
{
    constexpr std::int32_t toldMissing = 42;
    constexpr char script[] = "command -v -- \"$0\" >/dev/null || exit 42";
    if (!isStatusWithoutWsl(*inside.status)) {
        return std::nullopt;
    }
    const std::string& client = inside.arguments.front();
    std::vector<std::string> arguments = rules::commands::wslExec(client, rules::distributionOf(inside.arguments));
    arguments.insert(arguments.end(), {"sh", "-c", script, context.request.program.front()});
    const Run told = ask(context.programs, arguments);
    if (told.status == toldMissing) {
        return reportOn(inside, "WSL_FAILED", "PROGRAM_MISSING", context);
    }
    if (told.status != inside.status) {
        return std::nullopt;
    }
    // There may be no shell inside. Without WSL not even its distributions can be listed.
    const Run listing = ask(context.programs, rules::commands::wslList(client));
    const AdviceKey cause = causeOfWslStatus(listing);
    return cause == "WSL_NOT_INSTALLED" ? std::optional(reportOnWsl(inside, cause, listing, context)) : std::nullopt;
}

// What wsl.exe said may have gone to the user's own streams, so it says it once more, about a program that does nothing.
Run saying(const Run& inside, const Context& context)
{
    if (!inside.attached) {
        return inside;
    }
    std::vector<std::string> arguments =
        rules::commands::wslExec(inside.arguments.front(), rules::distributionOf(inside.arguments));
    arguments.emplace_back("true");
    const Run again = ask(context.programs, arguments);
    return again.status == wslFailureStatus() ? again : inside;
}

// WSL does not find the disk: that it is gone is another thing.
std::optional<Report> missingDisk(const Run& told, AdviceKey cause, const Run& inside, const Context& context)
{
    const std::optional<Disk> disk =
        cause == "WSL_DISK_MISSING" ? diskOf(rules::distributionOf(inside.arguments)) : std::nullopt;
    if (!disk || disk->state == DiskState::present) {
        return std::nullopt;
    }
    const bool gone = disk->state == DiskState::gone;
    Report report = makeReport(Failure("WSL_FAILED", disk->path),
                               gone ? AdviceKey("DISK_GONE") : AdviceKey("DISK_UNREACHABLE"), told, context.request);
    report.status = *inside.status;
    return report;
}

// wsl.exe says by its status alone that it failed.
std::optional<Report> wslFailure(const Run& inside, const Context& context)
{
    if (inside.status != wslFailureStatus()) {
        return missingProgram(inside, context);
    }
    const Run told = saying(inside, context);
    const AdviceKey known = causeOfWslStatus(told);
    if (std::optional<Report> report = missingDisk(told, known, inside, context)) {
        return report;
    }
    // wsl.exe does not know a distribution that is being installed either.
    const bool unknown = known == "WSL_DISTRIBUTION_UNKNOWN";
    if (!known.empty() && !unknown && known != "WSL_CODE_UNKNOWN") {
        return reportOnWsl(inside, known, told, context);
    }
    const std::string& name = rules::distributionOf(inside.arguments);
    const DistributionList distributions = askDistributions(context.programs, inside.arguments.front());
    if (!distributions.known() && !unknown) {
        return reportOnWsl(inside, causeOfWslStatus(distributions.answer), distributions.answer, context);
    }
    if (const AdviceKey cause = causeOfDistribution(distributions, name); !cause.empty() || unknown) {
        return reportOnWsl(inside, cause.empty() ? AdviceKey("DISTRIBUTION_MISSING") : cause, told, context);
    }
    return reportOn(told, wslFailureIsAmbiguous() ? AdviceKey("WSL_OR_PROGRAM_FAILED") : AdviceKey("WSL_FAILED"), known,
                    context);
}

// Docker's client ends with statuses that programs end with as well, so the container is looked at.
std::optional<Report> dockerFailure(const Run& inside, const Context& context)
{
    const std::int32_t status = *inside.status;
    if (status != 1 && (status < dockerRefused || status > dockerNotFound)) {
        return std::nullopt;
    }
    const std::string container = namesOf(context.request).container;
    switch (askContainer(context.programs, inside.arguments.front(), container)) {
    case ContainerState::unknown:
        return reportOn(inside, "DOCKER_FAILED", causeOfSilentEngine(dockerSettings().choice), context);
    case ContainerState::missing:
        return reportOn(inside, "DOCKER_FAILED", "CONTAINER_MISSING", context);
    case ContainerState::stopped:
        return reportOn(inside, "DOCKER_FAILED", "CONTAINER_NOT_RUNNING", context);
    case ContainerState::paused:
        return reportOn(inside, "DOCKER_FAILED", "CONTAINER_PAUSED", context);
    case ContainerState::running:
        break;
    }
    switch (status) {
    case dockerRefused:
        return reportOn(inside, "DOCKER_OR_PROGRAM_FAILED", "DOCKER_REFUSED", context);
    case dockerNotExecutable:
        return reportOn(inside, "DOCKER_OR_PROGRAM_FAILED", "PROGRAM_NOT_EXECUTABLE", context);
    case dockerNotFound:
        return reportOn(inside, "DOCKER_OR_PROGRAM_FAILED", "PROGRAM_NOT_FOUND", context);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<Report> diagnosis(const Run& inside, const Context& context)
{
    // A captured program, and one in a container without a terminal, does not hear of Ctrl-C.
    const Backend backend = selectedBackend();
    const bool hears = inside.attached && (backend == Backend::wsl || context.console.interactive);
    if (interrupted() && !hears) {
        Report report = reportOn(inside, "INTERRUPTED", "PROGRAM_LEFT", context);
        report.status = statusInterrupted;
        return report;
    }
    switch (backend) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return dockerFailure(inside, context);
    }
    return wslFailure(inside, context);
}

} // namespace kelpctl
