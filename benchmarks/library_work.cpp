#include "library_work.h"

#include "docker.h"
#include "frame.h"
#include "wsl.h"

#include "host/configuration.h"
#include "host/process.h"
#include "orb/lvm.h"

#include <algorithm>

namespace {

std::string& programOutput()
{
    static std::string output;
    return output;
}

// All of one length, so that their number alone makes them more.
std::string numbered(const char* stem, std::size_t number)
{
    constexpr std::size_t digits = 6;
    const std::string text = std::to_string(number);
    return stem + std::string(digits - std::min(digits, text.size()), '0') + text;
}

} // namespace

// In place of the process service's. The look-up of the Docker client finds none, which the queries do not mind.
orb::process::detail::RunResult orb::process::detail::run(const std::vector<std::string>& arguments,
                                                          const Environment& /*environment*/,
                                                          const std::string& /*workingDir*/, bool /*detach*/,
                                                          const RunOptions& /*options*/)
{
    if (arguments.front() == "where") {
        return {1, {}, {}};
    }
    return {0, programOutput(), {}};
}

namespace benchmarks {

void setProgramOutput(std::string output)
{
    programOutput() = std::move(output);
}

std::string distributionListing(std::size_t count)
{
    std::string listing;
    for (std::size_t i = 0; i < count; ++i) {
        for (const char character : numbered("distribution_", i) + "\r\n") {
            listing += character;
            listing += '\0';
        }
    }
    return listing;
}

std::string repositoryListing(std::size_t count)
{
    std::string listing;
    for (std::size_t i = 0; i < count; ++i) {
        listing += numbered("registry.example/team/image_", i) + "\n";
    }
    return listing;
}

std::map<std::string, std::string> variables(std::size_t count)
{
    std::map<std::string, std::string> all;
    for (std::size_t i = 0; i < count; ++i) {
        all.emplace(numbered("BENCHMARK_VARIABLE_", i), numbered("the value of ", i));
    }
    return all;
}

std::size_t listDistributions()
{
    return orb::lvm::detail::getDistros(false).size();
}

std::size_t listRepositories()
{
    return orb::lvm::detail::getImageRepositories().size();
}

std::size_t prepareEnvironment(std::map<std::string, std::string>& environment)
{
    std::vector<std::string> arguments{"program"};
    orb::lvm::applySharedEnvironment(arguments, environment);
    const std::size_t size = environment.size() + arguments.size();
    environment.erase("LD_LIBRARY_PATH");
    environment.erase("WSLENV");
    return size;
}

void writeLogStatement(int value)
{
    using namespace orb::lvm::detail;
    log(wslLogger(), Level::Detail, "getDistros: status = ", value);
}

void setLogging(bool on)
{
    foundation::core::config::Configuration configuration;
    configuration.setChannelMask("orb:lvm", on ? 8 : 0);
    foundation::core::config::configure(configuration);
}

} // namespace benchmarks
