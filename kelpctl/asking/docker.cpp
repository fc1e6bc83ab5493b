#include "asking/docker.h"

#include "terminal/json.h"
#include "terminal/text.h"

#include <algorithm>

namespace kelpctl {
namespace {

namespace json = boost::json;

const json::value& memberOf(const json::value& value, const char* name)
{
    static const json::value none;
    const json::object* object = value.if_object();
    const json::value* member = object == nullptr ? nullptr : object->if_contains(name);
    return member == nullptr ? none : *member;
}

bool isPodman(const json::value& versions)
{
    const json::array* components = memberOf(memberOf(versions, "Server"), "Components").if_array();
    const bool serves = components != nullptr &&
                        std::any_of(components->begin(), components->end(),
                                    [](const json::value& each) { return textAt(each, "Name") == "Podman Engine"; });
    // Docker's client writes "ApiVersion".
    return serves || !memberOf(memberOf(versions, "Client"), "APIVersion").is_null();
}

DockerProduct productOf(const json::value& versions, const std::string& platform)
{
    if (isPodman(versions)) {
        return DockerProduct::podman;
    }
    return platform.starts_with("Docker Desktop") ? DockerProduct::desktop : DockerProduct::engine;
}

} // namespace

DockerEngine askEngine(const Programs& programs, const std::string& client)
{
    DockerEngine engine;
    engine.answer = ask(programs, {client, "version", "--format", "{{json .}}"});
    const json::value versions = parsedJson(engine.answer.output);
    const json::value& server = memberOf(versions, "Server");
    engine.clientVersion = textAt(memberOf(versions, "Client"), "Version");
    engine.version = textAt(server, "Version");
    engine.system = textAt(server, "Os");
    engine.platform = textAt(memberOf(server, "Platform"), "Name");
    engine.product = productOf(versions, engine.platform);
    return engine;
}

std::string askEndpoint(const Programs& programs, const std::string& client)
{
    const Run answer = ask(programs, {client, "context", "inspect", "--format", "{{.Endpoints.docker.Host}}"});
    const std::vector<std::string> lines = displayLines(answer.output);
    return answer.succeeded() && !lines.empty() ? lines.front() : std::string();
}

ContainerState askContainer(const Programs& programs, const std::string& client, const std::string& container)
{
    const Run state = ask(programs, {client, "container", "inspect", "--format", "{{.State.Status}}", container});
    if (state.succeeded()) {
        return state.output.starts_with("running")  ? ContainerState::running
               : state.output.starts_with("paused") ? ContainerState::paused
                                                    : ContainerState::stopped;
    }
    return askEngine(programs, client).reachable() ? ContainerState::missing : ContainerState::unknown;
}

bool imageExists(const Programs& programs, const std::string& client, const std::string& image)
{
    return ask(programs, {client, "image", "inspect", "--format", "{{.Id}}", image}).succeeded();
}

bool imageHasProgram(const Programs& programs, const std::string& client, const std::string& image)
{
    const Run counts = ask(
        programs, {client, "image", "inspect", "--format", "{{len .Config.Cmd}} {{len .Config.Entrypoint}}", image});
    return !counts.output.starts_with("0 0");
}

} // namespace kelpctl
