#include "commands/lifecycle.h"

#include "asking/disk.h"
#include "asking/docker.h"
#include "asking/gateways.h"
#include "commands/archive.h"
#include "commands/wait.h"
#include "commands/work.h"
#include "failure/failure.h"
#include "failure/pull_causes.h"
#include "failure/report.h"
#include "request/backend.h"
#include "request/request.h"
#include "terminal/json.h"
#include "terminal/platform.h"

#include "lvm/commands.h"

#include "host/files.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace kelpctl {
namespace {

namespace json = boost::json;

// A distribution may be registered while its disk is not there any more.
void requireDisk(const Context& context)
{
    switch (selectedBackend()) {
    case Backend::wsl:
        break;
    case Backend::docker:
        return;
    }
    const std::optional<Disk> disk = diskOf(namesOf(context.request).image);
    if (disk && disk->state != DiskState::present) {
        throw Failure(disk->state == DiskState::gone ? AdviceKey("DISK_GONE") : AdviceKey("DISK_UNREACHABLE"),
                      disk->path);
    }
}

// The library takes the archive when the registry gives no image.
std::vector<Report> notesOnPulling(const Context& context)
{
    std::vector<Report> notes;
    for (const Run& run : context.journal.runs()) {
        if (orb::lvm::detail::commandOf(run.arguments) == orb::lvm::detail::Command::dockerPull && !run.succeeded()) {
            notes.push_back(makeReport(Failure("PULL_FAILED"), causeOfPull(run), run, context.request));
        }
    }
    return notes;
}

// The folder that the distribution is to lie in, when one is named.
void requireLocation(const Context& context)
{
    if (!context.request.location) {
        return;
    }
    switch (selectedBackend()) {
    case Backend::wsl:
        break;
    case Backend::docker:
        throw UsageError(context.request.command, "--location is for WSL: Docker's engine has a place of its own.");
    }
    const std::filesystem::path folder = foundation::core::path::temp_directory_name();
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error) || !mayWriteInto(folder)) {
        throw Failure("LOCATION_NOT_USABLE", foundation::core::text::cvt_ustring_utf8(folder.u16string()));
    }
}

// What provisioning did, by the programs that ran.
Outcome provisioned(const Context& context)
{
    const std::string name = namesOf(context.request).image;
    std::optional<std::string> source;
    for (const Run& run : context.journal.runs()) {
        if (const std::string made = orb::lvm::detail::sourceOf(run.arguments); !made.empty() && run.succeeded()) {
            source = made;
        }
    }
    if (!source) {
        requireDisk(context);
    }
    const std::string what = std::string("The ") + traitsOf(selectedBackend()).image + " " + name;
    Outcome outcome;
    outcome.result = json::object{{"kind", traitsOf(selectedBackend()).image},
                                  {"name", name},
                                  {"created", source.has_value()},
                                  {"source", orNull(source)}};
    outcome.notes = notesOnPulling(context);
    outcome.result.as_object()["notes"] = noteList(outcome.notes);
    outcome.lines = {source ? what + " was created from " + *source + "."
                            : what + " exists already; nothing was created."};
    return outcome;
}

// The removal is the last program that the library runs.
void requireRemoved(const Context& context)
{
    const std::vector<Run> runs = context.journal.runs();
    if (!runs.empty() && !runs.back().succeeded()) {
        throw Failure("REMOVAL_FAILED");
    }
}

// Forced removal by Docker succeeds for what is not there as well.
void requireImage(const Context& context)
{
    if (!traitsOf(selectedBackend()).hasContainers) {
        return;
    }
    const std::string client = orb::lvm::getContainerExecutablePath();
    const std::string image = namesOf(context.request).image;
    if (!imageExists(context.programs, client, image) && askEngine(context.programs, client).reachable()) {
        throw Failure("REMOVAL_FAILED", {}, "NO_SUCH_IMAGE");
    }
}

// The library only logs a removal that fails, so that is found out. Throws Failure for it, and when there is no such
// image.
void removeBy(const Context& context, const std::function<void()>& removal)
{
    requireClient();
    requireImage(context);
    removal();
    requireRemoved(context);
}

// A container goes on without its image.
void addContainerThatRuns(const Context& context, Outcome& outcome)
{
    if (!traitsOf(selectedBackend()).hasContainers) {
        return;
    }
    const Names names = namesOf(context.request);
    ContainerState state = ContainerState::missing;
    work(context, [&] {
        const std::string client = orb::lvm::getContainerExecutablePath();
        state = client.empty() ? state : askContainer(context.programs, client, names.container);
    });
    if (state == ContainerState::running) {
        outcome.lines.push_back("The container " + names.container + " still runs; \"" + names.invocation +
                                " stop --container " + names.container + "\" removes it.");
    }
}

Outcome removed(const Context& context)
{
    const std::string name = namesOf(context.request).image;
    Outcome outcome{{std::string("The ") + traitsOf(selectedBackend()).image + " " + name + " was removed."},
                    json::object{{"kind", traitsOf(selectedBackend()).image}, {"name", name}},
                    {}};
    addContainerThatRuns(context, outcome);
    return outcome;
}

// Some Docker clients report success for a container that is not there.
void requireContainer(const Context& context)
{
    if (!traitsOf(selectedBackend()).hasContainers) {
        return;
    }
    const std::string client = orb::lvm::getContainerExecutablePath();
    if (askContainer(context.programs, client, namesOf(context.request).container) == ContainerState::missing) {
        throw Failure("CONTAINER_NOT_STOPPED", {}, "NO_SUCH_CONTAINER");
    }
}

Outcome containerChanged(const Context& context, const char* change)
{
    if (!traitsOf(selectedBackend()).hasContainers) {
        return {{"WSL needs no container; nothing was done."},
                json::object{{"container", nullptr}, {"notes", json::array()}},
                {}};
    }
    const std::string container = namesOf(context.request).container;
    return {{"The container " + container + " was " + change + "."},
            json::object{{"container", container}, {"notes", json::array()}},
            {}};
}

// The container uses the host's network, which is another machine's under Docker Desktop.
std::vector<Report> notesOnReaching(const Context& context)
{
    if (!traitsOf(selectedBackend()).hasContainers) {
        return {};
    }
    DockerEngine engine;
    work(context, [&] { engine = askEngine(context.programs, orb::lvm::getContainerExecutablePath()); });
    if (engine.product != DockerProduct::desktop) {
        return {};
    }
    return {makeReport(Failure("HOST_NETWORKING_OPTIONAL"), {}, std::nullopt, context.request)};
}

} // namespace

Outcome setup(const Context& context)
{
    requireLocation(context);
    work(context, [&context] {
        waitForBackend(context);
        requireUsableArchive(context);
        callSetup(context.request.archive);
    });
    return provisioned(context);
}

Outcome provision(const Context& context)
{
    const Request& request = context.request;
    requireLocation(context);
    work(context, [&] {
        requireUsableArchive(context);
        orb::lvm::importFromTarIfNecessary(request.archive, request.name, request.rootFs);
    });
    return provisioned(context);
}

Outcome teardown(const Context& context)
{
    work(context, [&context] { removeBy(context, callTeardown); });
    return removed(context);
}

Outcome removeEnvironment(const Context& context)
{
    work(context, [&context] { removeBy(context, [&context] { orb::lvm::clearDistroImage(context.request.name); }); });
    return removed(context);
}

Outcome start(const Context& context)
{
    const Request& request = context.request;
    work(context, [&] {
        waitForBackend(context);
        requireClient();
        if (!orb::lvm::startContainerIfNecessary(request.container, request.image)) {
            throw Failure("CONTAINER_NOT_STARTED");
        }
    });
    Outcome outcome = containerChanged(context, "started");
    outcome.notes = notesOnReaching(context);
    outcome.result.as_object()["notes"] = noteList(outcome.notes);
    return outcome;
}

Outcome stop(const Context& context)
{
    const Request& request = context.request;
    work(context, [&] {
        requireClient();
        requireContainer(context);
        if (!orb::lvm::stopContainerIfNecessary(request.container)) {
            throw Failure("CONTAINER_NOT_STOPPED");
        }
    });
    return containerChanged(context, "removed");
}

} // namespace kelpctl
