#include "asking/docker.h"

#include "terminal/json.h"

namespace kelpctl {

DockerEngine askEngine(const Programs& programs, const std::string& client)
{
    DockerEngine engine;
    engine.answer = ask(programs, {client, "version", "--format", "{{json .}}"});
    const boost::json::value versions = parsedJson(engine.answer.output);
    const boost::json::object* parts = versions.if_object();
    if (parts != nullptr && parts->contains("Client")) {
        engine.clientVersion = textAt(parts->at("Client"), "Version");
    }
    if (parts != nullptr && parts->contains("Server")) {
        engine.version = textAt(parts->at("Server"), "Version");
        engine.system = textAt(parts->at("Server"), "Os");
    }
    return engine;
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
