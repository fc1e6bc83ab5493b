#include "scenarios.h"

#include "case_system.h"

#include <algorithm>
#include <stdexcept>

namespace faults {
namespace {

constexpr Backend docker = Backend::docker;
constexpr char hub[] = "kelp_hub_R2026b";

State distributions(std::vector<std::string> all, std::vector<std::string> running = {})
{
    return {.distributions = std::move(all), .running = std::move(running)};
}

State images(std::vector<std::string> all, std::vector<std::string> containers = {})
{
    return {.images = std::move(all), .containers = std::move(containers)};
}

// Programs that are none, one that is too old, and the right one.
State manyCandidates(State state, const std::string& program, const std::string& refused)
{
    state.candidates = {"missing/" + program, "folder/" + program, refused, program};
    return state;
}

std::vector<Scenario> allScenarios()
{
    const State nothing;
    const State stopped = distributions({hub});
    const State running = distributions({hub}, {hub});
    const State image = images({"ubuntu", hub});
    const State container = images({hub}, {"kelp_hub"});
    const State others = images({hub, otherName}, {"kelp_hub", otherContainer});
    return {
        {.name = "wsl-import-missing", .operation = "import", .before = nothing},
        {.name = "wsl-import-stopped", .operation = "import", .before = stopped},
        {.name = "wsl-import-running", .operation = "import", .before = running, .extraLogging = true},
        {.name = "wsl-import-address-known", .operation = "import", .before = stopped, .address = "172.29.16.1"},
        {.name = "wsl-import-named", .operation = "import-named", .before = stopped},
        {.name = "wsl-import-named-stopped", .operation = "import-named", .before = distributions({otherName})},
        {.name = "wsl-import-several-candidates",
         .operation = "import",
         .before = manyCandidates(nothing, "wsl.exe", oldWsl)},
        {.name = "wsl-import-without-archive", .operation = "import", .before = nothing, .archives = Archives::none},
        {.name = "wsl-import-by-which",
         .operation = "import",
         .before = nothing,
         .archives = Archives::plain,
         .which = true},
        {.name = "wsl-clear", .operation = "clear", .before = stopped},
        {.name = "wsl-clear-named", .operation = "clear-named", .before = distributions({hub, otherName})},
        {.name = "wsl-command-prefix", .operation = "command-prefix", .before = stopped},
        {.name = "wsl-arguments-prefix", .operation = "arguments-prefix", .before = stopped},
        {.name = "wsl-executable", .operation = "executable", .before = stopped},
        {.name = "wsl-start", .operation = "start", .before = stopped},
        {.name = "wsl-stop", .operation = "stop", .before = stopped},
        {.name = "wsl-gateway-setup", .operation = "setup", .before = nothing},
        {.name = "wsl-gateway-setup-given", .operation = "setup-given", .before = nothing},
        {.name = "wsl-gateway-teardown", .operation = "teardown", .before = running},
        {.name = "wsl-gateway-check", .operation = "check", .before = stopped},
        {.name = "docker-import-present", .backend = docker, .operation = "import", .before = image},
        {.name = "docker-import-load", .backend = docker, .operation = "import", .before = nothing},
        {.name = "docker-import-named", .backend = docker, .operation = "import-named", .before = image},
        {.name = "docker-import-rootfs", .backend = docker, .operation = "import-rootfs", .before = nothing},
        {.name = "docker-import-rootfs-unnamed", .backend = docker, .operation = "import-unnamed", .before = nothing},
        {.name = "docker-import-pull", .backend = docker, .operation = "import", .before = nothing, .registry = true},
        {.name = "docker-import-without-archive",
         .backend = docker,
         .operation = "import",
         .before = nothing,
         .archives = Archives::none},
        {.name = "docker-clear", .backend = docker, .operation = "clear", .before = image},
        {.name = "docker-clear-named", .backend = docker, .operation = "clear-named", .before = others},
        {.name = "docker-clear-several-candidates",
         .backend = docker,
         .operation = "clear",
         .before = manyCandidates(image, "docker.exe", "bin\\win64/docker.exe")},
        {.name = "docker-start", .backend = docker, .operation = "start", .before = image},
        {.name = "docker-start-named",
         .backend = docker,
         .operation = "start-named",
         .before = images({hub, otherName}, {"kelp_hub"}),
         .auxiliary = "  --rm \t-v  \"/a b\":/c\n"},
        {.name = "docker-stop", .backend = docker, .operation = "stop", .before = container},
        {.name = "docker-stop-named", .backend = docker, .operation = "stop-named", .before = others},
        {.name = "docker-command-prefix", .backend = docker, .operation = "command-prefix", .before = container},
        {.name = "docker-arguments-prefix", .backend = docker, .operation = "arguments-prefix", .before = container},
        {.name = "docker-executable", .backend = docker, .operation = "executable", .before = container},
        {.name = "docker-gateway-setup",
         .backend = docker,
         .operation = "setup",
         .before = nothing,
         .archives = Archives::plain},
        {.name = "docker-gateway-teardown", .backend = docker, .operation = "teardown", .before = image},
        {.name = "docker-gateway-check", .backend = docker, .operation = "check", .before = stopped},
    };
}

} // namespace

const std::vector<Scenario>& scenarios()
{
    static const std::vector<Scenario> all = [] {
        std::vector<Scenario> possible = allScenarios();
        std::erase_if(possible, [](const Scenario& each) { return !each.address.empty() && !canHaveWslAddress; });
        return possible;
    }();
    return all;
}

const Scenario& scenarioNamed(const std::string& name)
{
    const auto& all = scenarios();
    const auto entry = std::find_if(all.begin(), all.end(), [&name](const Scenario& s) { return s.name == name; });
    if (entry == all.end()) {
        throw std::invalid_argument("no such scenario: " + name);
    }
    return *entry;
}

bool provisions(const Scenario& scenario)
{
    return scenario.operation.starts_with("import") || scenario.operation.starts_with("setup");
}

} // namespace faults
