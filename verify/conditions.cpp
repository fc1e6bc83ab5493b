#include "conditions.h"

#include "programs.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace verify {

namespace {

constexpr std::array words = {"as claimed", "differs", "known difference", "not applicable", "not checked"};
static_assert(words.size() == verdictCount);

// What a need stands for, in the order in which it is looked at.
std::vector<std::string_view> partsOf(std::string_view need)
{
    if (need == "import") {
        return {"wsl", "--import"};
    }
    if (need == "distribution") {
        return {"wsl", "--import", "made distribution"};
    }
    if (need == "docker-changes") {
        return {"engine", "--docker"};
    }
    if (need == "image") {
        return {"engine", "--docker", "made image"};
    }
    return {need};
}

// One part: whether it is there, and what is said when it is not.
struct Part {
    std::string_view name;
    bool (*isThere)(const Options& options, const Machine& machine, OwnThings& own);
    Verdict otherwise;
    const char* why;
};

bool isStub(const Machine& machine)
{
    return !machine.wsl.empty() && !machine.wslUsable;
}

constexpr std::array parts = {
    Part{"wsl", [](const Options&, const Machine& machine, OwnThings&) { return machine.wslUsable; },
         Verdict::notApplicable, "there is no usable WSL here"},
    Part{"no-wsl", [](const Options&, const Machine& machine, OwnThings&) { return !machine.wslUsable; },
         Verdict::notApplicable, "there is a usable WSL here"},
    Part{"stub", [](const Options&, const Machine& machine, OwnThings&) { return isStub(machine); },
         Verdict::notApplicable, "there is no wsl.exe without WSL here"},
    Part{"docker", [](const Options&, const Machine& machine, OwnThings&) { return !machine.docker.empty(); },
         Verdict::notApplicable, "there is no Docker client here"},
    Part{"engine", [](const Options&, const Machine& machine, OwnThings&) { return machine.engine; },
         Verdict::notApplicable, "there is no Docker engine here"},
    Part{"--import", [](const Options& options, const Machine&, OwnThings&) { return options.import; },
         Verdict::notChecked, "only with --import"},
    Part{"--docker", [](const Options& options, const Machine&, OwnThings&) { return options.docker; },
         Verdict::notChecked, "only with --docker"},
    Part{"slow", [](const Options& options, const Machine&, OwnThings&) { return options.slow; }, Verdict::notChecked,
         "only with --slow"},
    Part{"person", [](const Options& options, const Machine&, OwnThings&) { return options.ask; }, Verdict::notChecked,
         "only with --ask, which needs a person"},
    Part{"made distribution",
         [](const Options&, const Machine&, OwnThings& own) { return own.distribution().status == 0; },
         Verdict::notChecked, "the import has failed"},
    Part{"made image", [](const Options&, const Machine&, OwnThings& own) { return own.image().status == 0; },
         Verdict::notChecked, "the image could not be made"},
};

const Part& partNamed(std::string_view name)
{
    const auto found = std::find_if(parts.begin(), parts.end(), [name](const Part& each) { return each.name == name; });
    if (found == parts.end()) {
        throw std::invalid_argument("no such need: " + std::string(name));
    }
    return *found;
}

} // namespace

std::vector<std::string> Options::written() const
{
    std::vector<std::string> all;
    for (const auto& [given, name] : {std::pair(import, "--import"), std::pair(docker, "--docker"),
                                      std::pair(slow, "--slow"), std::pair(ask, "--ask")}) {
        if (given) {
            all.emplace_back(name);
        }
    }
    return all;
}

std::string wordOf(Verdict verdict)
{
    return words.at(static_cast<std::size_t>(verdict));
}

std::optional<Obstacle> obstacleTo(const Fact& fact, const Options& options, const Machine& machine, OwnThings& own)
{
    if (interrupted()) {
        return Obstacle{Verdict::notChecked, "interrupted"};
    }
    for (const std::string& need : fact.needs) {
        for (const std::string_view name : partsOf(need)) {
            const Part& part = partNamed(name);
            if (!part.isThere(options, machine, own)) {
                return Obstacle{part.otherwise, part.why};
            }
        }
    }
    return std::nullopt;
}

} // namespace verify
