#include "setting.h"

#include "host/configuration.h"
#include "host/text.h"

#include <fstream>

namespace faults {

std::string utf8(const std::filesystem::path& path)
{
    return foundation::core::text::cvt_ustring_utf8(path.u16string());
}

Setting::Setting(const std::filesystem::path& folder, const Scenario& scenario)
    : stage_(folder),
      scenario_(scenario),
      path_("PATH", utf8(stage_.programs())),
      temporary_(temporaryVariable, utf8(stage_.temporary())),
      backend_("USE_WSL", scenario.backend == Backend::wsl ? "1" : "0"),
      registry_("USE_DOCKER_REPOSITORY", scenario.registry ? "1" : "0"),
      logging_("KELP_ADDITIONAL_LOGGING", scenario.extraLogging ? "1" : "0"),
      auxiliary_("AUX_DOCKER_ARGS")
{
    if (!scenario.auxiliary.empty()) {
        setVariable("AUX_DOCKER_ARGS", scenario.auxiliary);
    }
    if (!scenario.address.empty()) {
        address_.emplace(scenario.address);
    }
    foundation::core::config::Configuration configuration;
    configuration.setInstallationRoot(utf8(stage_.root() / "tree"));
    configuration.setRelease("R2026b");
    configuration.setChannelMasks({{"orb", 8 | 512}});
    foundation::core::config::configure(configuration);
}

Places Setting::places() const
{
    std::filesystem::path archives =
        stage_.root() / "tree" / "toolbox" / "shared" / "kavori" / "kelp" / "tar_files" / "";
    std::filesystem::path given = stage_.root() / "given.tar";
    return {stage_.shownFolder(), utf8(archives.make_preferred()), utf8(given.make_preferred())};
}

void Setting::build(const std::filesystem::path& player) const
{
    stage_.build(player, {scenario_.which ? "which" : "where", "wsl.exe", "docker.exe"}, scenario_.before);
    const std::filesystem::path archives = places().archives;
    std::filesystem::create_directories(archives);
    std::ofstream(places().givenArchive) << "an archive";
    if (scenario_.archives == Archives::none) {
        return;
    }
    for (const char* name : {"kelp_hub_distro.tar", "kelp_hub_docker.tar"}) {
        std::ofstream(archives / (std::string(name) + (scenario_.archives == Archives::plain ? "" : ".gz")))
            << "an archive";
    }
}

} // namespace faults
