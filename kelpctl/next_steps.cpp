#include "next_steps.h"

#include <array>

namespace kelpctl {
namespace {

constexpr std::array identifiers = {
    NextStep{"DOCKER_NOT_AVAILABLE",
             "Install Docker, or put the folder of docker.exe into PATH; with --wsl, WSL is used instead."},
    NextStep{"IMAGE_NOT_EXIST", "See with \"docker images\" what the archive holds, and name that image with --name."},
    NextStep{"TAR_FILE_LOAD_ERROR", "See with \"docker version\" that Docker runs, then check the archive: \"provision "
                                    "--root-fs\" takes a root file system, "
                                    "\"provision\" without it an image that \"docker save\" wrote."},
    NextStep{"TAR_FILE_NOT_AVAILABLE", "Name an archive that exists, or the installation that holds it with --root."},
    NextStep{"WSL_CANNOT_IMPORT_TAR_FILE",
             "Run \"wsl --status\" and do what it says, then \"wsl --update\", and try again."},
    NextStep{"WSL_NOT_USABLE", "Run \"wsl --status\" and do what it says, or use Docker with --docker."},
    NextStep{"WSL_FAILED", "Run \"kelpctl check\"; if it prints 0, create the distribution with \"kelpctl setup\". "
                           "A program that ends with 67 or 87 is reported like this too."},
    NextStep{"REMOVAL_FAILED", "Run \"kelpctl prefix\" to see the backend and the name, then list what exists with "
                               "\"wsl --list -q\" or \"docker images\"."},
    NextStep{"CONTAINER_NOT_STARTED",
             "Run \"docker ps -a\"; a container of that name goes away with \"kelpctl --docker "
             "stop\", a missing image is created by \"kelpctl --docker setup\"."},
    NextStep{"CONTAINER_NOT_STOPPED", "Run \"docker ps -a\" to see the containers' names, and whether Docker runs."},
    NextStep{"LOG_FILE_NOT_WRITABLE", "Name a file in a folder that exists and that you may write to with --log-file."},
    NextStep{"OUTPUT_NOT_WRITABLE", "Check that the disk or the pipe that standard output goes to takes more."},
    NextStep{"PROGRAM_NOT_STARTED", "Check that the program named above is installed and found through PATH; "
                                    "\"wsl --install\" installs wsl.exe."},
    NextStep{"TEXT_NOT_VALID", "Write paths and names in UTF-8."},
    NextStep{"FILE_NOT_ACCESSIBLE", "Check that the path named above exists and that you may read it."},
    NextStep{"INVALID_ARGUMENT", "Check the names and paths of the command line."},
    NextStep{"OUT_OF_MEMORY", "Close other programs and try again."},
    NextStep{"UNEXPECTED_ERROR", "Run the same command with --log detail and send its output to support."},
    NextStep{"USAGE", "Run \"kelpctl --help\"."},
};

constexpr char enableVirtualisation[] =
    "Switch virtualisation on in the firmware, run \"wsl --install --no-distribution\", and restart Windows.";
constexpr char nameTaken[] =
    "Remove the distribution of that name, in whatever case it is written, with \"kelpctl remove NAME\", or choose "
    "another name with --name.";
constexpr char busy[] =
    "Wait until the other program is done with the distribution; \"wsl --shutdown\" ends what hangs.";

constexpr std::array wslCodes = {
    NextStep{"ERROR_FILE_NOT_FOUND", "Name an archive that exists, or the installation that holds it with --root."},
    NextStep{"ERROR_PATH_NOT_FOUND",
             "Put kelp_hub_distro.tar.gz into the folder named above, or name an archive, or the installation that "
             "holds one with --root. If the archive is there, check that the folder that TEMP names exists."},
    NextStep{"ERROR_ALREADY_EXISTS", nameTaken},
    NextStep{"0x800700b7", nameTaken},
    NextStep{"ERROR_FILE_EXISTS", "Try again: each try uses a new folder. See with \"wsl --list\" who uses this one."},
    NextStep{"E_ILLEGAL_STATE_CHANGE", busy},
    NextStep{"0x8000000d", busy},
    NextStep{"E_INVALIDARG", "Choose a name of letters, digits, \".\", \"_\" and \"-\" with --name or --release."},
    NextStep{"E_ACCESSDENIED", "Check that you may read the archive and write to the folder that TEMP names."},
    NextStep{"E_UNEXPECTED", "Run \"wsl --shutdown\" and try again; if that hangs, restart Windows."},
    NextStep{"WSL_E_IMPORT_FAILED", "Copy the archive again: it is damaged, or no tar archive (\"tar -tf\" tells)."},
    NextStep{"WSL_E_NOT_A_LINUX_DISTRO",
             "Use the archive of a root file system (kelp_hub_distro.tar.gz), not a saved Docker image."},
    NextStep{"WSL_E_DISTRO_NOT_FOUND", "There is nothing of that name; \"wsl --list -q\" shows the names."},
    NextStep{"WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED", "Run kelpctl as an ordinary user, not as a system service."},
    NextStep{"HCS_E_HYPERV_NOT_INSTALLED", enableVirtualisation},
    NextStep{"HCS_E_SERVICE_NOT_AVAILABLE", enableVirtualisation},
    NextStep{"0x80370102", enableVirtualisation},
    NextStep{"0xc03a001a", "Take compression and encryption off the folder that TEMP names, and try again."},
};

constexpr std::string_view pathStart = "Wsl/";

bool isPathCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '/';
}

const char* findStep(std::span<const NextStep> steps, std::string_view key)
{
    for (const NextStep& step : steps) {
        if (key == step.key) {
            return step.text;
        }
    }
    return nullptr;
}

} // namespace

std::span<const NextStep> identifierSteps()
{
    return identifiers;
}

std::span<const NextStep> wslCodeSteps()
{
    return wslCodes;
}

std::string wslCodePath(std::string_view text)
{
    const std::size_t start = text.find(pathStart);
    if (start == std::string_view::npos) {
        return {};
    }
    std::size_t end = start;
    while (end < text.size() && isPathCharacter(text[end])) {
        ++end;
    }
    return std::string(text.substr(start, end - start));
}

std::string nextStep(const std::string& identifier, std::string_view codePath)
{
    if (const char* step = findStep(wslCodes, codePath.substr(codePath.rfind('/') + 1))) {
        return step;
    }
    const char* step = findStep(identifiers, identifier);
    return step != nullptr ? step : nextStep("UNEXPECTED_ERROR", {});
}

} // namespace kelpctl
