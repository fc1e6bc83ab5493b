#include "command_line.h"
#include "modes.h"
#include "options.h"
#include "output.h"
#include "registry.h"
#include "texts.h"
#include "verbs.h"

#include <algorithm>

namespace stand_in {
namespace {

namespace fs = std::filesystem;

// The one word behind a verb, with the quotes it may carry.
std::string takeName(std::string_view verb, std::string_view rest)
{
    const std::string_view name = takeWord(rest);
    if (name.empty()) {
        failOnMissingValue(verb);
    }
    return std::string(name);
}

Distribution& findInstalled(Registry& registry, const std::string& name)
{
    Distribution* distribution = registry.find(name);
    if (distribution == nullptr || !isInstalled(*distribution)) {
        fail(failures::unknownDistribution);
    }
    return *distribution;
}

// Finds distributions whose installation never ended, too.
Distribution beginUninstalling(const std::string& name)
{
    Registry registry;
    Distribution* distribution = registry.find(name);
    if (distribution == nullptr) {
        fail(failures::unknownDistribution);
    }
    if (isBusy(*distribution)) {
        fail(failures::distributionBusy);
    }
    stop(*distribution);
    distribution->state = "Uninstalling";
    distribution->worker = thisProcess();
    registry.save();
    return *distribution;
}

} // namespace

int unregisterDistribution(std::string_view rest)
{
    const Distribution distribution = beginUninstalling(takeName("--unregister", rest));
    std::error_code ignored;
    fs::remove_all(rootFileSystem(distribution), ignored);
    fs::remove(disk(distribution), ignored);
    fs::remove(distribution.basePath, ignored);
    Registry registry;
    registry.remove(distribution.name);
    registry.save();
    printSuccess();
    return 0;
}

int terminateDistribution(std::string_view rest)
{
    const std::string name = takeName("--terminate", rest);
    Registry registry;
    stop(findInstalled(registry, name));
    registry.save();
    printSuccess();
    return 0;
}

int setDefaultDistribution(std::string_view rest)
{
    const std::string name = takeName("--set-default", rest);
    Registry registry;
    registry.defaultName = findInstalled(registry, name).name;
    registry.save();
    printSuccess();
    return 0;
}

int shutDown(std::string_view rest)
{
    parseOptions(rest, {{"--force"}}, 0);
    Registry registry;
    std::for_each(registry.distributions.begin(), registry.distributions.end(), stop);
    registry.save();
    return 0;
}

int showStatus(std::string_view)
{
    const Registry registry;
    if (!registry.defaultName.empty()) {
        print(message("Default Distribution: {}", registry.defaultName) + "\n");
    }
    print(message("Default Version: {}", "2") + "\n");
    if (modeIsOn("virtualisation-off")) {
        print(message(failures::virtualisationOff.text) + "\n");
    }
    return 0;
}

int showVersion(std::string_view)
{
    print(message("WSL version: {}", wslVersion) + "\n" + message("Kernel version: {}", "6.6.87.2-1") + "\n" +
          message("WSLg version: {}", "1.0.66") + "\n" + message("MSRDC version: {}", "1.2.6353") + "\n" +
          message("Direct3D version: {}", "1.611.1-81528511") + "\n" +
          message("DXCore version: {}", "10.0.26100.1-240331-1435.ge-release") + "\n" +
          message("Windows version: {}", "10.0.26100.4652") + "\n");
    return 0;
}

int showHelp(std::string_view)
{
    print(std::string(usageText()) + "\n");
    return -1;
}

} // namespace stand_in
