#include "simulation.h"

#include "answers.h"

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

std::string plainLines(const Names& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

Answer succeeded(const std::string& text)
{
    return {0, stand_in::encoded(text), {}};
}

Answer wslFailure(const stand_in::KnownFailure& failure, const std::string& argument = {})
{
    return {minusOneStatus, stand_in::encoded(stand_in::failureLines(failure, argument)), {}};
}

Answer importDistribution(State& state, const std::string& name, const std::string& folder, const std::string& archive)
{
    if (!std::filesystem::exists(archive)) {
        return wslFailure(stand_in::failures::fileMissing);
    }
    if (!std::filesystem::is_directory(folder) && folder != "{new folder}") {
        return wslFailure(stand_in::failures::folderMissing);
    }
    if (has(state.distributions, name)) {
        return wslFailure(stand_in::failures::nameTaken);
    }
    state.distributions.push_back(name);
    return succeeded(std::string(stand_in::succeeded) + "\n");
}

Answer unregister(State& state, const std::string& name)
{
    if (!has(state.distributions, name)) {
        return wslFailure(stand_in::failures::unknownDistribution);
    }
    std::erase(state.distributions, name);
    std::erase(state.running, name);
    return succeeded(std::string(stand_in::succeeded) + "\n");
}

Answer startDistribution(State& state, const std::string& name, const std::string& program)
{
    if (!has(state.distributions, name)) {
        return wslFailure(stand_in::failures::unknownDistribution);
    }
    if (!has(state.running, name)) {
        state.running.push_back(name);
    }
    return {
        stand_in::programNotStarted,
        {},
        stand_in::relayError(2, "CreateProcessCommon", 640, "execvpe(" + program + ")", "No such file or directory")};
}

Answer wsl(State& state, const Arguments& arguments)
{
    const std::string verb = arguments.empty() ? std::string() : arguments.front();
    if (verb == "-v") {
        return succeeded(stand_in::withArgument("WSL version: {}", stand_in::wslVersion) + "\n");
    }
    if (verb == "--list" || verb == "-l") {
        return succeeded(plainLines(has(arguments, "--running") ? state.running : state.distributions));
    }
    if (verb == "--import" && arguments.size() == 6) {
        return importDistribution(state, arguments[1], arguments[2], arguments[3]);
    }
    if (verb == "--unregister" && arguments.size() == 2) {
        return unregister(state, arguments[1]);
    }
    if (verb == "-d" && arguments.size() == 4) {
        return startDistribution(state, arguments[1], arguments[3]);
    }
    return wslFailure(stand_in::failures::badParameter);
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

Answer startContainer(State& state, const Arguments& arguments)
{
    const std::string& image = arguments.back();
    const std::string option = "--name=";
    const auto naming = std::find_if(arguments.begin(), arguments.end(),
                                     [&option](const std::string& each) { return each.starts_with(option); });
    const std::string name = naming == arguments.end() ? "some_name" : naming->substr(option.size());
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
        const bool ours = std::filesystem::path(arguments.back()).filename().string().starts_with("kelp_hub");
        const std::string image = ours ? savedImage : otherImage;
        addOnce(state.images, image);
        return {0, "Loaded image: " + image + ":latest\n", {}};
    }
    if (verb == "import" && arguments.size() == 3) {
        addOnce(state.images, arguments[2].empty() ? "<none>" : arguments[2]);
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
        return startContainer(state, arguments);
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

// As long as what a client says when everything goes wrong at once; its end differs from its beginning.
std::string longText(const std::string& what)
{
    constexpr int lines = 4000;
    std::string text;
    for (int line = 1; line <= lines; ++line) {
        text += what + ", line " + std::to_string(line) + "\n";
    }
    return text;
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
                      : kind == "container"  ? state.containers
                                             : state.candidates;
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
    save("candidate", state.candidates);
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

Entry entryOf(const std::string& candidate)
{
    return candidate.starts_with("missing")  ? Entry::nothing
           : candidate.starts_with("folder") ? Entry::folder
                                             : Entry::program;
}

std::string nativePath(const std::string& folder, const std::string& relative)
{
    return folder + std::filesystem::path(relative).make_preferred().string();
}

Answer answer(State& state, const std::string& folder, const std::string& program, const Arguments& arguments)
{
    if (program == "where" || program == "which") {
        std::string lines;
        for (const std::string& candidate : state.candidates.empty() ? Names{arguments.at(0)} : state.candidates) {
            lines += nativePath(folder, candidate) + "\r\n";
        }
        return {0, lines, {}};
    }
    if (program == oldWsl) {
        return wslFailure(stand_in::failures::unknownToInbox, arguments.at(0));
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
        return {1, longText("simulated output"), longText("simulated failure")};
    case Fault::failsSilently:
        return {1, {}, {}};
    case Fault::minusOne:
        return wslFailure(stand_in::failures::catastrophe);
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
