#include "simulation.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace faults {
namespace {

constexpr std::array<std::pair<Fault, const char*>, 15> names{{
    {Fault::none, "none"},
    {Fault::missing, "missing"},
    {Fault::unstartable, "unstartable"},
    {Fault::fails, "fails"},
    {Fault::failsSilently, "fails-silently"},
    {Fault::minusOne, "minus-one"},
    {Fault::killed, "killed"},
    {Fault::hangs, "hangs"},
    {Fault::garbage, "garbage"},
    {Fault::silent, "silent"},
    {Fault::flood, "flood"},
    {Fault::idle, "idle"},
    {Fault::keepsPipe, "keeps-pipe"},
    {Fault::hostKilledBefore, "host-killed-before"},
    {Fault::hostKilledAfter, "host-killed-after"},
}};

using Names = std::vector<std::string>;

bool has(const Names& list, const std::string& name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

bool hasArgument(const Arguments& arguments, const std::string& argument)
{
    return has(arguments, argument);
}

// As wsl.exe prints: UTF-16LE with CR LF.
std::string utf16Lines(const Names& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        for (const char character : line + "\r\n") {
            text += character;
            text += '\0';
        }
    }
    return text;
}

std::string plainLines(const Names& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

Answer wslFailure(const std::string& code)
{
    return {minusOneStatus, utf16Lines({"Error code: Wsl/Service/" + code}), {}};
}

Answer importDistribution(State& state, const std::string& name, const std::string& folder)
{
    if (has(state.distributions, name)) {
        return wslFailure("RegisterDistro/ERROR_ALREADY_EXISTS");
    }
    if (!std::filesystem::is_directory(folder) && folder != "{new folder}") {
        return wslFailure("RegisterDistro/ERROR_PATH_NOT_FOUND");
    }
    state.distributions.push_back(name);
    return {0, utf16Lines({"The operation completed successfully."}), {}};
}

Answer unregister(State& state, const std::string& name)
{
    if (!has(state.distributions, name)) {
        return wslFailure("WSL_E_DISTRO_NOT_FOUND");
    }
    std::erase(state.distributions, name);
    std::erase(state.running, name);
    return {0, utf16Lines({"The operation completed successfully."}), {}};
}

Answer startDistribution(State& state, const std::string& name)
{
    if (!has(state.distributions, name)) {
        return wslFailure("WSL_E_DISTRO_NOT_FOUND");
    }
    if (!has(state.running, name)) {
        state.running.push_back(name);
    }
    return {127, {}, "<3>init: execvpe(~) failed: No such file or directory\n"};
}

Answer wsl(State& state, const Arguments& arguments)
{
    const std::string verb = arguments.empty() ? std::string() : arguments.front();
    if (verb == "-v") {
        return {0, utf16Lines({"WSL version: 2.3.26.0"}), {}};
    }
    if (verb == "--list" || verb == "-l") {
        return {0, utf16Lines(hasArgument(arguments, "--running") ? state.running : state.distributions), {}};
    }
    if (verb == "--import" && arguments.size() == 6) {
        return importDistribution(state, arguments[1], arguments[2]);
    }
    if (verb == "--unregister" && arguments.size() == 2) {
        return unregister(state, arguments[1]);
    }
    if (verb == "-d" && arguments.size() == 4) {
        return startDistribution(state, arguments[1]);
    }
    return wslFailure("E_INVALIDARG");
}

Answer dockerFailure(const std::string& text)
{
    return {1, {}, "Error: " + text + "\n"};
}

void addOnce(Names& list, const std::string& name)
{
    if (!has(list, name)) {
        list.push_back(name);
    }
}

Answer removeImage(State& state, const std::string& name)
{
    if (!has(state.images, name)) {
        return dockerFailure("No such image: " + name);
    }
    std::erase(state.images, name);
    return {0, "Untagged: " + name + "\n", {}};
}

Answer startContainer(State& state, const std::string& option, const std::string& image)
{
    const std::string name = option.substr(option.find('=') + 1);
    if (!has(state.images, image)) {
        return dockerFailure("Unable to find image '" + image + "'");
    }
    if (has(state.containers, name)) {
        return dockerFailure("the name is already in use");
    }
    state.containers.push_back(name);
    return {0, "0123456789abcdef\n", {}};
}

Answer removeContainer(State& state, const std::string& name)
{
    if (!has(state.containers, name)) {
        return dockerFailure("No such container: " + name);
    }
    std::erase(state.containers, name);
    return {0, name + "\n", {}};
}

Answer docker(State& state, const Arguments& arguments)
{
    const std::string verb = arguments.empty() ? std::string() : arguments.front();
    if (verb == "images") {
        return {0, plainLines(state.images), {}};
    }
    if (verb == "load") {
        addOnce(state.images, savedImage);
        return {0, std::string("Loaded image: ") + savedImage + ":latest\n", {}};
    }
    if (verb == "import" && arguments.size() == 3) {
        addOnce(state.images, arguments[2]);
        return {0, "sha256:0123456789abcdef\n", {}};
    }
    if (verb == "pull" && arguments.size() == 3) {
        addOnce(state.images, arguments[2].substr(0, arguments[2].find(':')));
        return {0, arguments[2] + "\n", {}};
    }
    if (verb == "tag" && arguments.size() == 3) {
        addOnce(state.images, arguments[2]);
        return {};
    }
    if (verb == "image") {
        return removeImage(state, arguments.back());
    }
    if (verb == "run") {
        return startContainer(state, arguments.at(3), arguments.back());
    }
    if (verb == "container") {
        return removeContainer(state, arguments.back());
    }
    return dockerFailure("unknown command");
}

const std::string& garbage()
{
    using namespace std::string_literals;
    static const std::string bytes = "\x01\x02 garbage \xff\xfe\r\n\0\0x\xc3\x28 \x80\n"s;
    return bytes;
}

constexpr std::size_t floodSize = std::size_t{64} * 1024 * 1024;

} // namespace

State loadState(const std::filesystem::path& file)
{
    State state;
    std::ifstream stream(file);
    for (std::string kind, name; stream >> kind >> name;) {
        Names& list = kind == "distribution" ? state.distributions
                      : kind == "running"    ? state.running
                      : kind == "image"      ? state.images
                                             : state.containers;
        list.push_back(name);
    }
    return state;
}

void saveState(const State& state, const std::filesystem::path& file)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    const auto save = [&stream](const char* kind, const Names& list) {
        for (const std::string& name : list) {
            stream << kind << ' ' << name << '\n';
        }
    };
    save("distribution", state.distributions);
    save("running", state.running);
    save("image", state.images);
    save("container", state.containers);
}

const char* nameOf(Fault fault)
{
    return std::find_if(names.begin(), names.end(), [fault](const auto& entry) { return entry.first == fault; })
        ->second;
}

Fault faultNamed(const std::string& name)
{
    const auto entry = std::find_if(names.begin(), names.end(), [&name](const auto& e) { return e.second == name; });
    if (entry == names.end()) {
        throw std::invalid_argument("no such fault: " + name);
    }
    return entry->first;
}

std::vector<Fault> survivableFaults()
{
    return {Fault::missing, Fault::unstartable, Fault::fails,  Fault::failsSilently, Fault::minusOne, Fault::killed,
            Fault::hangs,   Fault::garbage,     Fault::silent, Fault::flood,         Fault::idle,     Fault::keepsPipe};
}

Answer answer(State& state, const std::string& folder, const std::string& program, const Arguments& arguments)
{
    if (program.starts_with("where") || program.starts_with("which")) {
        return {0, folder + arguments.at(0) + "\r\n", {}};
    }
    return program == "wsl.exe" ? wsl(state, arguments) : docker(state, arguments);
}

Answer answerWith(Fault fault, State& state, const std::string& folder, const std::string& program,
                  const Arguments& arguments)
{
    State unchanged = state;
    const bool doesNothing = fault == Fault::idle || fault == Fault::fails || fault == Fault::failsSilently ||
                             fault == Fault::minusOne || fault == Fault::hostKilledBefore;
    Answer result = answer(doesNothing ? unchanged : state, folder, program, arguments);
    switch (fault) {
    case Fault::fails:
        return {1, "simulated output\n", "simulated failure\n"};
    case Fault::failsSilently:
        return {1, {}, {}};
    case Fault::minusOne:
        return {minusOneStatus, utf16Lines({"Error code: Wsl/E_UNEXPECTED"}), {}};
    case Fault::killed:
        return {killedStatus, result.output.substr(0, result.output.size() / 2), {}};
    case Fault::garbage:
        return {0, garbage(), garbage()};
    case Fault::silent:
        return {0, {}, {}};
    case Fault::flood:
        result.output.append(floodSize, 'x');
        return result;
    default:
        return result;
    }
}

} // namespace faults
