#include "examinations.h"

using kelpctl::ArchiveKind;
using kelpctl::Backend;
using kelpctl::CandidateState;
using kelpctl::Ending;
using kelpctl::Examination;
using kelpctl::Run;
using kelpctl::Source;

namespace {

constexpr char wslPath[] = "C:\\Program Files\\WSL\\wsl.exe";
constexpr char dockerPath[] = "C:\\Docker\\docker.exe";

Examination goodInGeneral()
{
    Examination found;
    found.release = {"r1", Source::variable};
    found.root = {"C:\\tree", Source::flag};
    found.image = "kelp_hub_r1";
    found.container = "kelp_hub";
    found.archiveFolder = "C:\\tree\\tar_files";
    found.archives = {{"kelp_hub_distro.tar.gz", ArchiveKind::gzip, true, 1000, false},
                      {"kelp_hub_distro.tar", ArchiveKind::missing, false, 0, false},
                      {"kelp_hub_docker.tar.gz", ArchiveKind::gzip, true, 2000, false},
                      {"kelp_hub_docker.tar", ArchiveKind::missing, false, 0, false}};
    found.taken = {.kind = ArchiveKind::gzip, .fileBytes = 1000, .extent = kelpctl::Extent::beginning};
    found.taken.unpackedBytes = 3000;
    found.processor = "amd64";
    found.temporary = {"C:\\Temp", true, true, 1U << 30U};
    found.timeLimit = std::chrono::seconds(10);
    found.wsl.lookUp = failed({"which", "wsl.exe"}, 127, "");
    found.wsl.executable = "C:\\Windows\\System32\\wsl.exe";
    found.wsl.listing = failed({found.wsl.executable, "-l", "-q"}, 127, "");
    found.docker.lookUp = failed({"where", "docker.exe"}, 1, "");
    found.account = kelpctl::Account{"PC\\anna", false, false, 1};
    found.wsl.policies.emplace();
    found.wsl.config = kelpctl::WslConfigFile{"C:\\Users\\anna\\.wslconfig", false, {}, {}};
    found.wsl.otherAccounts.emplace();
    return found;
}

} // namespace

Run answered(const std::vector<std::string>& arguments, const std::string& output)
{
    return {Ending::exited, arguments, 0, output, {}, output, {}};
}

Run failed(const std::vector<std::string>& arguments, std::int32_t status, const std::string& output)
{
    return {Ending::exited, arguments, status, output, {}, output, {}};
}

Run timedOut(const std::vector<std::string>& arguments)
{
    return {Ending::timedOut, arguments, 137, {}, {}, {}, {}};
}

Examination goodWsl()
{
    Examination found = goodInGeneral();
    found.backend = Backend::wsl;
    found.archives[0].taken = true;
    found.wsl.lookUp = answered({"where", "wsl.exe"}, std::string(wslPath) + "\n");
    found.wsl.candidates = {
        {wslPath, CandidateState::answers, true, answered({wslPath, "-v"}, "WSL version: 2.4.13.0\n")}};
    found.wsl.executable = wslPath;
    found.wsl.version = "2.4.13.0";
    found.wsl.listing = answered({wslPath, "-l", "-q"}, "kelp_hub_r1\n");
    found.wsl.table = answered({wslPath, "--list", "--all", "--verbose"}, "* kelp_hub_r1 Running 2\n");
    found.wsl.distributions = {{"kelp_hub_r1", "Running", 2, true}};
    return found;
}

Examination goodDocker()
{
    Examination found = goodInGeneral();
    found.backend = Backend::docker;
    found.backendSetting = {"--docker", Source::flag};
    found.archives[2].taken = true;
    found.docker.lookUp = answered({"where", "docker.exe"}, std::string(dockerPath) + "\n");
    found.docker.candidates = {{dockerPath, CandidateState::regularFile, true, {}}};
    found.docker.client = dockerPath;
    found.docker.clientExists = true;
    found.docker.engine.clientVersion = "28.0.1";
    found.docker.engine.version = "27.5.1";
    found.docker.engine.system = "linux";
    found.docker.engine.answer = answered({dockerPath, "version"}, "{}");
    found.docker.imageListing = answered({dockerPath, "images"}, "");
    found.docker.images = {{"registry/zqkelp/kelp_hub_r1", "latest", "0123456789ab", "77MB"}};
    found.docker.containerListing = answered({dockerPath, "ps"}, "");
    found.docker.containers = {{"kelp_hub", "kelp_hub_r1", "running", "Up 3 minutes"}};
    return found;
}
