#include "docker_machine.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::vector<std::string> linesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace

DockerEngine::DockerEngine() : backend_("USE_WSL", "0"), host_("DOCKER_HOST", DOCKER_ENGINE)
{
    EXPECT_EQ(run({"version"}).status, 0) << "the engine of the tests does not run";
    clear();
}

DockerEngine::~DockerEngine()
{
    clear();
}

orb::process::detail::RunResult DockerEngine::run(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), utf8(standInFolder() / "docker.exe"));
    return orb::process::detail::run(arguments);
}

std::vector<std::string> DockerEngine::images() const
{
    return linesOf(run({"images", "--format", "{{.Repository}}:{{.Tag}}"}).standardOutput);
}

std::vector<std::string> DockerEngine::runningContainers() const
{
    return linesOf(run({"ps", "--format", "{{.Names}}"}).standardOutput);
}

std::vector<std::string> DockerEngine::containers() const
{
    return linesOf(run({"ps", "-a", "--format", "{{.Names}}"}).standardOutput);
}

std::filesystem::path DockerEngine::archive(const std::string& name)
{
    return std::filesystem::path(DOCKER_ARCHIVES) / name;
}

void DockerEngine::clear() const
{
    for (const std::string& container : linesOf(run({"ps", "-aq"}).standardOutput)) {
        run({"rm", "-f", container});
    }
    for (const std::string& image : linesOf(run({"images", "-aq", "--no-trunc"}).standardOutput)) {
        run({"image", "rm", "--force", image});
    }
}
