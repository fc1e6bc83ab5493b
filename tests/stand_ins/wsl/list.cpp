#include "options.h"
#include "output.h"
#include "registry.h"
#include "texts.h"
#include "verbs.h"

#include <algorithm>

namespace stand_in {
namespace {

std::string padded(std::string text, std::size_t width)
{
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string_view stateText(const Distribution& distribution)
{
    if (!isInstalled(distribution)) {
        return distribution.state;
    }
    return isRunning(distribution) ? "Running" : "Stopped";
}

// The default one comes first, the others in the registry's order, which means nothing.
std::vector<Distribution> select(const Registry& registry, bool all, bool onlyRunning)
{
    std::vector<Distribution> selected;
    std::copy_if(registry.distributions.begin(), registry.distributions.end(), std::back_inserter(selected),
                 [&](const Distribution& each) { return onlyRunning ? isRunning(each) : all || isInstalled(each); });
    std::stable_partition(selected.begin(), selected.end(),
                          [&](const Distribution& each) { return sameName(each.name, registry.defaultName); });
    return selected;
}

std::string namesOnly(const std::vector<Distribution>& selected)
{
    std::string text;
    for (const Distribution& distribution : selected) {
        text += distribution.name + "\n";
    }
    return text;
}

std::string plainList(const std::vector<Distribution>& selected, const std::string& defaultName)
{
    std::string text = message("Windows Subsystem for Linux Distributions:") + "\n";
    for (const Distribution& distribution : selected) {
        const bool isDefault = sameName(distribution.name, defaultName);
        text += (isDefault ? message("{} (Default)", distribution.name) : distribution.name) + "\n";
    }
    return text;
}

std::string table(const std::vector<Distribution>& selected, const std::string& defaultName)
{
    std::size_t width = 0;
    for (const Distribution& distribution : selected) {
        width = std::max(width, distribution.name.size() + 4);
    }
    std::string text = "  " + padded("NAME", width) + padded("STATE", 16) + "VERSION\n";
    for (const Distribution& distribution : selected) {
        text += sameName(distribution.name, defaultName) ? "* " : "  ";
        text += padded(distribution.name, width) + padded(std::string(stateText(distribution)), 16) +
                std::to_string(distribution.version) + "\n";
    }
    return text;
}

} // namespace

int listDistributions(std::string_view rest)
{
    const Options options = parseOptions(rest, {{"--quiet", 'q'}, {"--verbose", 'v'}, {"--running"}, {"--all"}}, 0);
    const bool quiet = options.has("--quiet");
    const bool verbose = options.has("--verbose");
    const bool onlyRunning = options.has("--running") && !verbose;
    if ((quiet && verbose) || (options.has("--all") && options.has("--running"))) {
        throw Failure{std::string(usageText()), ""};
    }
    const Registry registry;
    const std::vector<Distribution> selected = select(registry, options.has("--all"), onlyRunning);
    if (quiet) {
        print(namesOnly(selected));
        return 0;
    }
    if (selected.empty() && onlyRunning) {
        fail(failures::noneRunning);
    }
    if (selected.empty()) {
        fail(failures::noneInstalled);
    }
    print(verbose ? table(selected, registry.defaultName) : plainList(selected, registry.defaultName));
    return 0;
}

} // namespace stand_in
