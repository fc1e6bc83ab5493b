#include "doctor/docker.h"

#include "doctor/docker_client.h"
#include "doctor/docker_engine.h"
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

// Of "where".
constexpr std::int32_t notFoundByLookUp = 1;

void judgeDockerName(const Examination& found, Findings& findings)
{
    if (!isDockerName(found.image)) {
        findings.problem("DOCKER_NAME_INVALID");
    }
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

void examineRegistry(const Context& context, Examination& found)
{
    constexpr std::size_t enough = 8;
    found.pullsFromRegistry =
        rules::isOne(foundation::core::env::variable(rules::registryVariable).value_or("").c_str());
    DockerExamination& docker = found.docker;
    const std::vector<std::string>& helpers = docker.settings.helpers;
    for (std::size_t index = 0; docker.clientExists && index < std::min(helpers.size(), enough); ++index) {
        if (ask(context.programs, {docker.lookUp.arguments.front(), helpers[index]}).status == notFoundByLookUp) {
            docker.missingHelpers.push_back(helpers[index]);
        }
    }
}

// The client wants them for nothing else.
void judgeRegistry(const Examination& found, Findings& findings)
{
    if (found.pullsFromRegistry && findings.needsCreation() && hasClient(found)) {
        for (const std::string& helper : found.docker.missingHelpers) {
            findings.note("CREDENTIAL_HELPER_MISSING", helper);
        }
    }
}

void describeRegistry(const Examination& found, CheckOutput& out)
{
    const DockerExamination& docker = found.docker;
    out.member("docker", "pullsFromRegistry") = found.pullsFromRegistry;
    out.member("docker", "missingCredentialHelpers") = arrayOf(docker.missingHelpers);
    if (docker.clientExists && found.pullsFromRegistry) {
        out.judged("registry", "asked before the archive is used: USE_DOCKER_REPOSITORY is \"1\"", false);
    }
    for (const std::string& helper : docker.missingHelpers) {
        out.row("password helper", helper + ": not found, though the client's configuration names it");
    }
}

constexpr std::array dockerRows = {
    Check{.about = "name", .judge = judgeDockerName},
    Check{"client", examineClient, judgeClient, describeClient},
    Check{"engine", examineEngine, judgeEngine, describeEngine},
    Check{.about = "engine", .judge = judgeProduct},
    Check{.about = "context", .examine = examineContext, .describe = describeContext},
    Check{"image", examineImages, judgeImages, describeImages},
    Check{"container", examineContainers, judgeContainers, describeContainers},
    Check{"registry", examineRegistry, judgeRegistry, describeRegistry},
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
