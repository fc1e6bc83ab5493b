#include "machine.h"

#include "programs.h"

#include "host/text.h"
#include "lvm/commands.h"
#include "lvm/rules.h"
#include "lvm/text.h"

#include <algorithm>
#include <iterator>

namespace verify {

namespace commands = orb::lvm::detail::commands;
using orb::lvm::detail::trimmedLines;

namespace {

constexpr int patientSeconds = 90;
constexpr char systemsOwn[] = R"(C:\Windows\System32\wsl.exe)";

Answer ask(const std::vector<std::string>& arguments, int limitSeconds = patientSeconds)
{
    return runProgram({arguments, {{"WSL_UTF8", "1"}}, {}, {}, limitSeconds});
}

std::vector<std::string> linesOf(const Answer& answer)
{
    return answer.status == 0 ? trimmedLines(foundation::core::text::readable(answer.output))
                              : std::vector<std::string>();
}

// Without one that answers, the last that is there: what it says is worth knowing.
void findWsl(Machine& machine)
{
    std::vector<std::string> candidates = linesOf(ask(commands::wslLookUp("where")));
    candidates.emplace_back(systemsOwn);
    for (const std::string& candidate : candidates) {
        Answer version = ask(commands::wslVersion(candidate));
        if (version.status == notStarted) {
            continue;
        }
        machine.wsl = candidate;
        machine.wslVersion = std::move(version);
        if (machine.wslVersion.status == 0) {
            break;
        }
    }
    const bool answers = !machine.wsl.empty() && machine.wslVersion.status == 0;
    machine.wslUsable = answers || (!machine.wsl.empty() && ask(commands::wslCheck(machine.wsl)).status == 0);
}

void findDocker(Machine& machine)
{
    using orb::lvm::detail::ClientKind;
    for (const std::string& candidate : linesOf(ask(commands::dockerLookUp()))) {
        if (orb::lvm::detail::clientKindOf(candidate) == ClientKind::file) {
            machine.docker = candidate;
            machine.dockerVersion = ask({candidate, "version"}, 20);
            machine.engine = machine.dockerVersion.status == 0;
            return;
        }
    }
}

std::string toldBy(const Answer& answer)
{
    return foundation::core::text::readable(answer.output + answer.errors);
}

} // namespace

Machine examineMachine()
{
    Machine machine;
    findWsl(machine);
    findDocker(machine);
    return machine;
}

boost::json::object describePrograms(const Machine& machine)
{
    return {{"wsl", machine.wsl.empty() ? "" : toldBy(machine.wslVersion)},
            {"wslUsable", machine.wslUsable},
            {"docker", machine.docker.empty() ? "" : toldBy(machine.dockerVersion)},
            {"dockerEngine", machine.engine}};
}

std::vector<std::string> distributions(const std::string& wsl)
{
    return linesOf(ask({wsl, "--list", "-q", "--all"}));
}

std::string defaultDistribution(const std::string& wsl)
{
    for (const std::string& line : linesOf(ask({wsl, "--list", "--verbose", "--all"}))) {
        if (const std::vector<std::string> words = orb::lvm::detail::words(line);
            words.size() > 1 && words.front() == "*") {
            return words[1];
        }
    }
    return {};
}

std::vector<std::string> images(const std::string& docker)
{
    return linesOf(ask(commands::dockerImages(docker)));
}

} // namespace verify
