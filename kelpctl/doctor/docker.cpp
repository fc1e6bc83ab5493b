#include "doctor/docker.h"

#include "doctor/docker_client.h"
#include "terminal/json.h"
#include "terminal/text.h"

#include "lvm/rules.h"
#include "lvm/text.h"

#include "host/environment.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;
namespace rules = orb::lvm::detail;

void judgeDockerName(const Examination& found, Findings& findings)
{
    if (!isDockerName(found.image)) {
        findings.problem("DOCKER_NAME_INVALID");
    }
}

bool hangs(const DockerExamination& docker)
{
    const auto runs = {&docker.engine.answer, &docker.imageListing, &docker.containerListing};
    return std::any_of(runs.begin(), runs.end(), [](const Run* run) { return run->ending == Ending::timedOut; });
}

bool hasEngine(const Examination& found)
{
    return hasClient(found) && !hangs(found.docker) && found.docker.engine.reachable();
}

void examineEngine(const Context& context, Examination& found)
{
    if (found.docker.clientExists) {
        found.docker.engine = askEngine(context.programs, found.docker.client);
    }
}

void judgeEngine(const Examination& found, Findings& findings)
{
    const DockerExamination& docker = found.docker;
    if (!hasClient(found)) {
        return;
    }
    if (hangs(docker)) {
        findings.problem("TOOL_HANGS", fileName(docker.client));
    } else if (!docker.engine.reachable()) {
        findings.problem("DOCKER_ENGINE_NOT_REACHABLE");
    } else if (docker.imageListing.succeeded() && docker.engine.system == "windows") {
        findings.problem("DOCKER_RUNS_WINDOWS_CONTAINERS");
    }
}

void describeEngine(const Examination& found, CheckOutput& out)
{
    const DockerEngine& engine = found.docker.engine;
    out.member("docker", "engine") = {{"reachable", engine.reachable()},
                                      {"version", textOrNull(engine.version)},
                                      {"system", textOrNull(engine.system)},
                                      {"reply", runObject(engine.answer)}};
    if (!found.docker.clientExists) {
        return;
    }
    if (engine.reachable()) {
        out.judged("engine", "version " + engine.version + (engine.system.empty() ? "" : " for " + engine.system));
        return;
    }
    out.judged("engine", "cannot be reached: " + out.endingText(engine.answer));
    out.said(engine.answer.error);
}

// One object a line; a line that is none is left out.
std::vector<json::value> objectsIn(const std::string& text)
{
    std::vector<json::value> objects;
    for (const std::string& line : rules::trimmedLines(text)) {
        json::value value = parsedJson(line);
        if (value.is_object()) {
            objects.push_back(std::move(value));
        }
    }
    return objects;
}

void examineImages(const Context& context, Examination& found)
{
    DockerExamination& docker = found.docker;
    if (!docker.engine.reachable()) {
        return;
    }
    docker.imageListing = ask(context.programs, {docker.client, "images", "--format", "{{json .}}"});
    for (const json::value& image : objectsIn(docker.imageListing.output)) {
        docker.images.push_back(
            {textAt(image, "Repository"), textAt(image, "Tag"), textAt(image, "ID"), textAt(image, "Size")});
    }
}

void judgeImages(const Examination& found, Findings& findings)
{
    if (hasEngine(found) && !found.docker.imageListing.succeeded()) {
        findings.problem("DOCKER_REFUSED");
    }
}

std::string imageText(const DockerImage& image)
{
    return image.repository + ": tag " + image.tag + ", " + image.size;
}

json::object imageObject(const DockerImage& image)
{
    return {{"repository", image.repository}, {"tag", image.tag}, {"id", image.id}, {"size", image.size}};
}

void describeImages(const Examination& found, CheckOutput& out)
{
    const DockerExamination& docker = found.docker;
    out.member("docker", "images") = listOf(docker.imageListing.succeeded(), docker.images, imageObject);
    if (!docker.clientExists || !docker.engine.reachable()) {
        return;
    }
    if (!docker.imageListing.succeeded()) {
        out.judged("images", "not known: " + out.endingText(docker.imageListing));
        out.said(docker.imageListing);
        return;
    }
    const DockerImage* expected = expectedImage(found);
    out.judged("image", expected == nullptr ? found.image + ": missing" : imageText(*expected));
    out.others("other images", docker.images, expected, imageText);
}

const DockerContainer* expectedContainer(const Examination& found)
{
    return findIn(found.docker.containers,
                  [&found](const DockerContainer& each) { return each.name == found.container; });
}

void examineContainers(const Context& context, Examination& found)
{
    DockerExamination& docker = found.docker;
    if (!docker.imageListing.succeeded()) {
        return;
    }
    docker.containerListing = ask(context.programs, {docker.client, "ps", "--all", "--format", "{{json .}}"});
    for (const json::value& container : objectsIn(docker.containerListing.output)) {
        docker.containers.push_back({textAt(container, "Names"), textAt(container, "Image"), textAt(container, "State"),
                                     textAt(container, "Status")});
    }
}

void judgeContainers(const Examination& found, Findings& findings)
{
    if (!hasEngine(found) || !found.docker.imageListing.succeeded()) {
        return;
    }
    const DockerContainer* container = expectedContainer(found);
    if (container == nullptr && expectedImage(found) != nullptr && found.docker.containerListing.succeeded()) {
        findings.note("CONTAINER_MISSING");
    } else if (container != nullptr && container->state != "running") {
        findings.note(container->state == "paused" ? AdviceKey("CONTAINER_PAUSED")
                                                   : AdviceKey("CONTAINER_NOT_RUNNING"));
    }
}

std::string containerText(const DockerContainer& container)
{
    return container.name + ": " + container.state + ", of the image " + container.image;
}

json::object containerObject(const DockerContainer& container)
{
    return {
        {"name", container.name}, {"image", container.image}, {"state", container.state}, {"status", container.status}};
}

void describeContainers(const Examination& found, CheckOutput& out)
{
    const DockerExamination& docker = found.docker;
    out.member("docker", "containers") =
        listOf(docker.containerListing.succeeded(), docker.containers, containerObject);
    if (!docker.clientExists || !docker.engine.reachable()) {
        return;
    }
    if (!docker.containerListing.succeeded()) {
        out.row("containers", "not known: " + out.endingText(docker.containerListing));
        out.said(docker.containerListing);
        return;
    }
    const DockerContainer* expected = expectedContainer(found);
    out.judged("container", expected == nullptr ? found.container + ": missing" : containerText(*expected),
               expected != nullptr && expected->state == "running");
    out.others("other containers", docker.containers, expected, containerText);
}

void examineRegistry(const Context& /*context*/, Examination& found)
{
    found.pullsFromRegistry =
        rules::isOne(foundation::core::env::variable(rules::registryVariable).value_or("").c_str());
}

void describeRegistry(const Examination& found, CheckOutput& out)
{
    out.member("docker", "pullsFromRegistry") = found.pullsFromRegistry;
    if (found.docker.clientExists && found.pullsFromRegistry) {
        out.row("registry", "asked before the archive is used: USE_DOCKER_REPOSITORY is \"1\"");
    }
}

constexpr std::array dockerRows = {
    Check{.about = "name", .judge = judgeDockerName},
    Check{"client", examineClient, judgeClient, describeClient},
    Check{"engine", examineEngine, judgeEngine, describeEngine},
    Check{"image", examineImages, judgeImages, describeImages},
    Check{"container", examineContainers, judgeContainers, describeContainers},
    Check{.about = "registry", .examine = examineRegistry, .describe = describeRegistry},
};

} // namespace

std::span<const Check> dockerChecks()
{
    return dockerRows;
}

const DockerImage* expectedImage(const Examination& found)
{
    return findIn(found.docker.images, [&found](const DockerImage& each) { return each.name() == found.image; });
}

Presence presenceInDocker(const Examination& found)
{
    const bool known = found.docker.imageListing.succeeded();
    if (hasEngine(found) && known && expectedImage(found) != nullptr) {
        return Presence::exists;
    }
    return known ? Presence::missing : Presence::unknown;
}

} // namespace kelpctl
