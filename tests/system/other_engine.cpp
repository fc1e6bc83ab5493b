#include "other_engine.h"

#include <filesystem>

namespace {

constexpr char program[] = "docker-stand-in";

const bool windows = *programSuffix != '\0';

// Behind the bridge it is the bridge that is called docker.exe.
std::vector<std::string> programNames()
{
    return windows ? std::vector<std::string>{"where", "docker"} : std::vector<std::string>{"where"};
}

} // namespace

OtherEngine::OtherEngine(const std::string& mode)
    : programs_(programNames()),
      bridge_("WINE_BRIDGE_DOCKER", unixPath(standInFolder()) + "/" + program),
      mode_("DOCKER_STAND_IN_MODE", mode),
      state_("DOCKER_STAND_IN_STATE", unixPath(folder_.path() / "asked")),
      searchPath_(programs_.folder(), true)
{
    if (!windows) {
        std::filesystem::copy_file(standInFolder() / program, programs_.folder() / "docker.exe");
    }
}
