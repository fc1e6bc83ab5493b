// The texts of kelpctl's advice, and their keys.
#pragma once

#include <array>
#include <string_view>

namespace kelpctl {

// One entry of kelpctl's own catalogue. "{1}" to "{4}" stand for the Names below. In a translation the text has the key's
// name, and the next step the key's name with ".next" behind it.
struct Advice {
    // An error's identifier, or the name of a cause.
    const char* key;
    // What it means. Empty for the errors that the host's catalogue has a text for.
    const char* text;
    const char* nextStep;
};

inline constexpr std::array allAdvice = {
    // The errors of the host's catalogue, which has their texts.
    Advice{"DOCKER_NOT_AVAILABLE", "",
           "Install Docker, or put the folder of docker.exe into PATH. The flag --wsl uses WSL instead."},
    Advice{"IMAGE_NOT_EXIST", "",
           "See with \"docker images\" what the archive held. If the name ends in a release, give that release with "
           "--release; otherwise use it with \"{1} start --image NAME\"."},
    Advice{"TAR_FILE_LOAD_ERROR", "",
           "Name the right archive: \"{1} setup ARCHIVE\" takes an image that \"docker save\" wrote, \"{1} provision "
           "--archive ARCHIVE --root-fs --name {2}\" a root file system."},
    Advice{"TAR_FILE_NOT_AVAILABLE", "",
           "Name an archive that exists, or the installation that holds one with --root; \"{1} doctor\" shows where "
           "archives are looked for."},
    Advice{"WSL_CANNOT_IMPORT_TAR_FILE", "",
           "Run \"wsl --status\" and do what it says, then \"wsl --update\", and try again."},

    // What kelpctl finds out by itself.
    Advice{"WSL_NOT_USABLE", "WSL cannot list its distributions.",
           "Run \"wsl --status\" and do what it says, or use Docker, with the flag --docker."},
    Advice{"WSL_FAILED", "wsl.exe failed before or while it ran the program.", "Run \"{1} doctor\"."},
    Advice{
        "WSL_OR_PROGRAM_FAILED",
        "Either wsl.exe failed before or while it ran the program, or the program itself has ended with this status.",
        "Run \"{1} doctor\"; if it finds nothing, the status is the program's. One that ends with 67 or 87 is reported "
        "like this too."},
    Advice{"DOCKER_FAILED", "The Docker client failed before or while it ran the program.", "Run \"{1} doctor\"."},
    Advice{"DOCKER_OR_PROGRAM_FAILED",
           "Either Docker failed before it ran the program, or the program itself has ended with this status.",
           "Run \"{1} doctor\"; if it finds nothing, the status is the program's."},
    Advice{"REMOVAL_FAILED", "{2} could not be removed.", "Run \"{1} doctor\" to see what is there."},
    Advice{"CONTAINER_NOT_STARTED", "The container {3} could not be started.",
           "See with \"docker ps -a\" whether a container of that name is there; \"{1} stop --container {3}\" removes "
           "it."},
    Advice{"CONTAINER_NOT_STOPPED", "The container {3} could not be stopped.",
           "See with \"docker ps -a\" which containers there are."},
    Advice{"DOCTOR_FOUND_PROBLEMS", "Something would keep \"{1} setup\" from working.",
           "Do what is said under \"next steps\", then run \"{1} doctor\" again."},
    Advice{"INTERRUPTED", "Interrupted.", "Run the same command again to go on; nothing was left behind."},
    Advice{"LOCATION_NOT_USABLE", "The folder for the distribution's disk does not exist or may not be written to: {4}",
           "Make that folder, or name another one with --location."},
    Advice{"LOG_FILE_NOT_WRITABLE", "The log file {4} cannot be written.",
           "Name a file in a folder that exists and that you may write to with --log-file."},
    Advice{"OUTPUT_NOT_WRITABLE", "The result could not be written.",
           "Check that the disk or the pipe that standard output goes to takes more."},
    Advice{"REPORT_NOT_WRITTEN", "The report {4} exists already, or cannot be written.",
           "Name a new file in a folder that you may write to: \"{1} report FILE\"."},
    Advice{"PROGRAM_NOT_STARTED", "{4}", "Check that the program named above is installed and that you may run it."},
    Advice{"TEXT_NOT_VALID", "{4}", "Write paths and names in UTF-8."},
    Advice{"FILE_NOT_ACCESSIBLE", "{4}", "Check that the path named above exists and that you may read it."},
    Advice{"INVALID_ARGUMENT", "{4}", "Check the names and paths of the command line."},
    Advice{"OUT_OF_MEMORY", "There is not enough memory.", "Close other programs and try again."},
    Advice{"UNEXPECTED_ERROR", "{4}", "Run the same command with --log detail and send its output to support."},
    Advice{"USAGE", "{4}", "Run \"kelpctl --help\"."},
    Advice{"USAGE_OF_COMMAND", "{4}", "Run \"kelpctl {2} --help\"."},

    Advice{"WORK_STALLED", "Nothing has moved for longer than the stall limit, so the work was ended.",
           "Run \"{1} doctor\" to see what is there, and try again."},

    // What is said while work goes on.
    Advice{"IMPORT_QUIET", "Nothing has come to the disk of {2} for {4}; the import may be stuck.",
           "Wait, or end it with Ctrl-C: what WSL has begun may go on all the same."},
    Advice{"LOAD_QUIET", "Nothing of {2} has moved for {4}; the Docker engine may be stuck.",
           "Wait, or end it with Ctrl-C: what the engine has begun may go on all the same."},
    Advice{"DISK_NEARLY_FULL", "Only {4} are left on the disk that {2} is unpacked to.",
           "Make room there now: WSL does not always tell when it has run out."},

    // What work that was ended may leave behind.
    Advice{"IMPORT_LEFT", "WSL may still be importing {2} into {4}.",
           "Run \"{1} doctor\": it shows what came of that. When nothing did, delete that folder."},
    Advice{"IMAGE_LEFT", "The Docker engine may still finish the image {2}.",
           "Run \"{1} remove {2}\" to be rid of it."},
    Advice{"CONTAINER_LEFT", "The container {3} may have been created.",
           "Run \"{1} stop --container {3}\" to be rid of it."},
    Advice{"REMOVAL_LEFT", "{2} may have been removed, or not.", "Run the same command again."},
    Advice{"PROGRAM_LEFT", "The program inside the environment may go on running.",
           "See what runs with \"{1} exec -- ps\"."},

    // Causes that are found by a further look.
    Advice{"CONTAINER_RUNS_ALREADY", "The container {3} runs already.",
           "Use it with \"{1} exec --container {3} -- PROGRAM\"; \"{1} stop --container {3}\" removes it."},
    Advice{"CONTAINER_EXISTS", "A container {3} exists already, and does not run.",
           "Remove it with \"{1} stop --container {3}\", and try again."},
    Advice{
        "TOOL_HANGS", "{4} does not answer.",
        "Restart what does not answer: \"wsl --shutdown\" or a restart of Windows for wsl.exe, Docker for the client."},
    Advice{"WSL_NOT_FOUND", "There is no wsl.exe.",
           "On Windows run \"wsl --install\"; elsewhere use Docker, with the flag --docker."},
    Advice{
        "LOOK_UP_MISSING", "There is no program \"where\", which the programs of WSL and Docker are looked up with.",
        "Put a \"where\" into PATH: Windows has one in C:\\Windows\\System32, the testkit has one for other systems."},
    Advice{"WSL_NOT_INSTALLED", "The Windows Subsystem for Linux is not installed.",
           "Run \"wsl --install --no-distribution\" as administrator, and restart Windows."},
    Advice{"DISTRIBUTION_MISSING", "There is no distribution {2}.",
           "Create it with \"{1} setup\". If \"wsl --list\" shows one of another release, name that with --release."},
    Advice{"DOCKER_ENGINE_NOT_REACHABLE", "The Docker engine does not answer.",
           "Start Docker; when \"docker version\" shows a server, try again."},
    Advice{"DOCKER_CHOICE_SILENT", "The Docker engine that DOCKER_HOST or DOCKER_CONTEXT names does not answer.",
           "Start that engine, or unset the variable to use Docker's own choice; \"{1} doctor\" shows what it names."},
    Advice{"IMAGE_MISSING", "There is no image {2}.",
           "\"{1} setup\" creates the default one; \"docker images\" shows what there is. An image of another release "
           "is found with --release."},
    Advice{"IMAGE_WITHOUT_PROGRAM",
           "The image {2} names no program to run, as one made from a root file system does not.",
           "Set the variable AUX_DOCKER_ARGS to \"--entrypoint sh\", and try again."},
    Advice{"NO_SUCH_IMAGE", "There is no image {2}.", "See with \"docker images\" which images there are."},
    Advice{"NO_SUCH_CONTAINER", "There is no container {3}.", "See with \"docker ps -a\" which containers there are."},
    Advice{"CONTAINER_PAUSED", "The container {3} is paused.", "Let it go on with \"docker unpause {3}\"."},
    Advice{"PROGRAM_MISSING", "The environment has no program {4}.",
           "Check the program's name, or give its whole path inside the environment."},
    Advice{"CONTAINER_MISSING", "There is no container {3}.", "Start it with \"{1} start --container {3}\"."},
    Advice{"CONTAINER_NOT_RUNNING", "The container {3} does not run.",
           "Remove it with \"{1} stop --container {3}\", then start it with \"{1} start --container {3}\"."},
    Advice{"DOCKER_REFUSED", "The Docker client or the engine refused the command; no program ran.",
           "Do what Docker says above; \"docker ps -a\" and \"docker images\" show what there is."},
    Advice{"PROGRAM_NOT_EXECUTABLE",
           "Docker could not execute the program, or the program itself has ended with status 126.",
           "Check inside the environment that the program is a file that may be executed."},
    Advice{"PROGRAM_NOT_FOUND", "The environment has no such program, or the program itself has ended with status 127.",
           "Check the program's name, or give its whole path inside the environment."},

    // What keeps an image from being pulled, which the archive stands in for.
    Advice{"PULL_FAILED", "The registry was asked first and gave no image, so the archive was used.",
           "Unset USE_DOCKER_REPOSITORY if the archive is to be used in any case."},
    Advice{"PULL_CREDENTIALS", "Docker's configuration names a program for passwords that is missing or fails.",
           "Put its folder into PATH, or take its name out of \"credsStore\" and \"credHelpers\" in "
           ".docker/config.json in your user folder."},
    Advice{"PULL_LIMIT", "The registry takes no more requests from this address for now.",
           "Run \"docker login\", which raises the limit, or wait some hours."},
    Advice{"PULL_CERTIFICATE",
           "The engine does not trust the registry's certificate, as behind a proxy that opens encryption.",
           "Give the engine the certificate of your network's authority, and restart it."},
    Advice{"PULL_PROCESSOR", "The registry has no image for this computer's processor.",
           "Use an archive that was made for it: \"{1} setup ARCHIVE\"."},
    Advice{"PULL_MISSING", "The registry has no image of this release.",
           "Check the release that \"{1} doctor\" shows, or unset USE_DOCKER_REPOSITORY."},
    Advice{"PULL_DENIED", "The registry gives the image to nobody, or only to those who are logged in.",
           "Run \"docker login\" if you have an account there; otherwise unset USE_DOCKER_REPOSITORY."},
    Advice{"PULL_NETWORK", "The engine does not reach the registry.",
           "Check the network, and the proxy that the engine is set to use."},

    // Failures of wsl.exe, by code.
    Advice{"WSL_FILE_MISSING", "WSL does not find the archive.",
           "Name an archive that exists, or the installation that holds one with --root; \"{1} doctor\" shows where "
           "archives are looked for."},
    Advice{"WSL_PATH_MISSING", "WSL does not find the archive's folder, or the temporary folder.",
           "Put the archive into the folder named above, or name an archive, or the installation that holds one with "
           "--root. If it is there, check that the folder that TEMP names exists."},
    Advice{"WSL_NAME_TAKEN", "A distribution of that name is registered already; WSL takes no notice of case.",
           "Choose another name with \"provision --name\", or another release with --release; \"wsl --list\" shows the "
           "one that has it."},
    Advice{"WSL_LOCATION_TAKEN", "The folder for the distribution is in use.",
           "Try again: each try uses a new folder. \"wsl --list\" shows who uses this one."},
    Advice{"WSL_BUSY", "The distribution is being installed, removed or converted.",
           "Wait until the other program is done with it; \"wsl --list --all --verbose\" shows what goes on."},
    Advice{"WSL_NAME_INVALID", "WSL does not accept the name or an argument.",
           "Choose a name of letters, digits, \".\", \"_\" and \"-\" with --name or --release."},
    Advice{"WSL_ACCESS_DENIED", "Access is denied.",
           "Check that you may read the archive and write to the folder that TEMP names."},
    Advice{"WSL_SERVICE_BROKEN", "The WSL service has failed.",
           "Run \"wsl --shutdown\" and try again; if that hangs, restart Windows."},
    Advice{
        "WSL_ARCHIVE_BROKEN", "The archive could not be unpacked: it is damaged, no tar archive, or the disk is full.",
        "Make room if little is left. \"{1} archive FILE\" tells whether the archive is whole; copy it again if not."},
    Advice{"WSL_ARCHIVE_NOT_LINUX", "The archive holds no Linux distribution.",
           "Use the archive of a root file system (kelp_hub_distro.tar.gz), not a saved Docker image."},
    Advice{"WSL_DISTRIBUTION_UNKNOWN", "There is no distribution of that name.",
           "See the names with \"wsl --list\"; create the hub's with \"{1} setup\"."},
    Advice{"WSL_SYSTEM_ACCOUNT", "WSL does not work for the system account.",
           "Run kelpctl as an ordinary user, not as a system service."},
    Advice{"WSL_VIRTUALISATION_OFF", "Virtualisation is not available.",
           "Switch virtualisation on in the firmware, run \"wsl --install --no-distribution\", and restart Windows."},
    Advice{"WSL_COMPONENT_MISSING", "A part of Windows that WSL needs is not installed.",
           "Run \"wsl --install --no-distribution\" as administrator, and restart Windows."},
    Advice{"WSL_DISK_ATTRIBUTES", "The temporary folder is compressed or encrypted, which WSL's disks must not be.",
           "Take compression and encryption off the folder that TEMP names, and try again."},
    Advice{"WSL_DISK_FULL", "The disk is full.",
           "Make room on the disk of the folder that TEMP names, or name a folder on another disk with --location."},
    Advice{"WSL_TIMED_OUT", "WSL did not start in time.", "Run \"wsl --shutdown\", and try again."},
    Advice{"WSL_ARCHIVE_IN_USE", "Another program holds the archive.",
           "Wait until the program that copies or checks the archive is done, and try again."},
    Advice{"WSL_DISK_MISSING", "WSL does not find the distribution's disk.",
           "Run \"{1} doctor\": it shows where the disk should be, and whether it is there."},
    Advice{"DISK_GONE",
           "The distribution {2} is registered, but its disk is gone, as when Windows' Storage Sense, a cleaner or a "
           "terminal server has emptied the temporary folder: {4}",
           "Run \"{1} remove {2}\", which finds nothing left to lose, then create it again: the hub's own with "
           "\"{1} setup\", another one with \"{1} provision\"."},
    Advice{"DISK_UNREACHABLE", "The disk of the distribution {2} cannot be looked at: {4}",
           "Connect the drive that it is on, or check that you may read its folder; then try again."},
    Advice{"WSL_DISK_DENIED", "WSL may not open the distribution's disk.",
           "Check that you may read and write the disk that \"{1} doctor\" shows, and that security software does not "
           "keep WSL from it."},
    Advice{"WSL_DISK_IN_USE", "Another program holds a disk that WSL needs.",
           "Run \"wsl --shutdown\" and try again; if that does not help, let backup and security software leave the "
           "disk alone."},
    Advice{"WSL_DISK_DAMAGED", "The distribution's disk is damaged.",
           "Run \"wsl --shutdown\", make a copy of the disk, and have e2fsck look at it as Microsoft's page \"How to "
           "manage WSL disk space\" says."},
    Advice{"WSL_ENTRY_BROKEN", "The entry of a distribution in the registry is not whole.",
           "Look with \"reg query HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Lxss /s\" for the entry that "
           "lacks what wsl.exe names, and put it back; ask support if you do not know it."},
    Advice{"WSL_CONFIGURATION", "WSL cannot use what the file .wslconfig in your user folder says.",
           "Mend what wsl.exe names in %USERPROFILE%\\.wslconfig, or rename that file; then run \"wsl --shutdown\" and "
           "try again."},
    Advice{"WSL_PLUGIN", "A plug-in of WSL, such as security products bring along, keeps it from starting.",
           "Ask whoever looks after the product that wsl.exe names; when it wants a newer WSL, run \"wsl --update\"."},
    Advice{"WSL_POLICY", "A policy of this computer keeps WSL from being used.",
           "Ask whoever looks after this computer for the policies of WSL, \"AllowWSL\" and its like."},
    Advice{"WSL_MEMORY", "There is not enough memory for WSL's virtual machine.",
           "Close other programs, or lower memory= in %USERPROFILE%\\.wslconfig; then run \"wsl --shutdown\" and try "
           "again."},
    Advice{"WSL_NETWORK", "WSL cannot set up the network of its virtual machine.",
           "Run \"wsl --shutdown\" and try again; if that does not help, set another networkingMode= in "
           "%USERPROFILE%\\.wslconfig."},
    Advice{"WSL_INSTALLATION_INCOMPLETE", "A file of WSL itself is missing; the distributions are not affected.",
           "Repair WSL: download the installer (.msi) of the version that \"wsl --version\" shows from "
           "github.com/microsoft/WSL/releases, right-click it, and choose \"Repair\"."},
    Advice{"WSL_INSTALLATION_BROKEN", "WSL is not wholly installed; the distributions are not affected.",
           "Run \"wsl --update\" as administrator and restart Windows; if that fails, run the installer (.msi) from "
           "github.com/microsoft/WSL/releases."},
    Advice{
        "WSL_FILES_DENIED", "WSL may not open a file that its virtual machine needs.",
        "Check that you may read the files that %USERPROFILE%\\.wslconfig names; if it names none, repair WSL with the "
        "installer (.msi) from github.com/microsoft/WSL/releases."},
    Advice{"WSL_BEING_INSTALLED", "WSL is being installed or updated.",
           "Wait until that is done, restart Windows if it asks for it, and try again."},
    Advice{"WSL_DOWNLOAD_FAILED", "WSL could not download a part of itself.",
           "Check the connection to the internet, the proxy included, and run \"wsl --update --web-download\"."},
    Advice{"WSL_SERVICE_GONE", "The WSL service, or the virtual machine behind it, has ended meanwhile.",
           "Try again; if it happens again, run \"wsl --shutdown\", or restart Windows."},
    Advice{
        "WSL_SERVICE_OFF", "The WSL service is switched off.",
        "Let the service WSLService (LxssManager in older versions) start again in services.msc, and restart Windows."},
    Advice{"WSL_SERVICE_REFUSES", "WSL denies access.",
           "Run kelpctl as the user who is logged on, not as a service nor over SSH, and check that security software "
           "does not hold WSL back."},
    Advice{"WSL_CODE_UNKNOWN", "kelpctl does not know what is behind the code that wsl.exe gives.",
           "Do what wsl.exe itself says; if that does not help, look for the code at github.com/microsoft/WSL/issues."},
    Advice{"WSL_STATUS_67", "The program ended with status 67, which wsl.exe takes for a user that does not exist.",
           "Look at what the program printed; wsl.exe never passes the status 67 on."},
    Advice{"WSL_STATUS_87", "The program ended with status 87, which wsl.exe takes for a want of terminals.",
           "Look at what the program printed; wsl.exe never passes the status 87 on."},

    // What is found in an archive.
    Advice{"ARCHIVE_HAS_PROBLEMS", "{2} cannot be created from {4}.", "Do what is said under \"next steps\"."},
    Advice{"ARCHIVE_REFUSED", "The archive was not used, since creating {2} from it would fail.",
           "Name another archive: \"{1} setup ARCHIVE\"; the flag --force tries it with this one all the same."},
    Advice{"ARCHIVE_MISSING", "There is no file {4}.", "Name an archive that exists."},
    Advice{"ARCHIVE_CUT_OFF", "The archive ends too early: {4}",
           "Copy or download it once more from where it came; the disk was full, or the transfer was broken off."},
    Advice{"ARCHIVE_DAMAGED", "The archive is damaged: {4}", "Copy or download it once more from where it came."},
    Advice{"ARCHIVE_BOMB", "The archive unpacks to so much that it can be no file system: {4}",
           "Do not use it; ask whoever made it."},
    Advice{"ARCHIVE_SUM_DIFFERS", "The archive {4} has another checksum than the file .sha256 beside it says.",
           "Copy or download both once more from where they came."},
    Advice{"ARCHIVE_SUM_MISSING", "{4} has no checksum for the archive.",
           "Make it with \"sha256sum\", in the folder of the archive."},
    Advice{"ARCHIVE_END_MISSING",
           "{4} lacks the mark that ends a tar archive; it may have been cut off between two files.",
           "Compare its size with that of where it came from."},
    Advice{"ARCHIVE_LEADS_OUTSIDE", "The archive holds a path with \"..\", which is refused when it is unpacked: {4}",
           "Do not use it; ask whoever made it."},
    Advice{"ARCHIVE_IS_IMAGE", "{4} is a saved image for Docker, not a root file system.",
           "Use it with Docker, by the flag --docker, or make a root file system of it with \"docker export\"."},
    Advice{"ARCHIVE_IS_ROOT_FS", "{4} is a root file system, not an image that \"docker save\" wrote.",
           "Use it with WSL, by the flag --wsl, or with \"{1} provision --archive ARCHIVE --root-fs --name NAME\"."},
    Advice{"ARCHIVE_WITHOUT_SYSTEM", "{4} holds no root file system: there is neither /etc nor /bin/sh in it.",
           "Pack the root of a file system, not a folder above it."},
    Advice{"ARCHIVE_WITHOUT_IMAGE", "{4} holds no image.", "Make the archive with \"docker save\"."},
    Advice{"ARCHIVE_OTHER_IMAGE", "The archive holds no image {2}, but: {4}",
           "If the name ends in a release, give that release with --release; otherwise tag the image and save it once "
           "more."},
    Advice{"ARCHIVE_FOR_NEWER_DOCKER",
           "{4} has the list of the OCI layout only, which Docker reads from version 25 on.",
           "Save the image with \"docker save\" for older versions."},
    Advice{"ARCHIVE_OTHER_PROCESSOR", "The archive is for another processor than this computer has: {4}",
           "Take the archive for this computer's processor; programs of the other do not start, or are emulated."},
    Advice{"ARCHIVE_WITHOUT_SHELL", "{4} holds no /bin/sh, or one that leads nowhere.",
           "Put a shell in if programs are to be run by one."},
    Advice{"ARCHIVE_WITHOUT_ETC", "{4} holds no /etc.", "Put /etc/passwd in, at least, so that users have names."},
    Advice{"ARCHIVE_WITHOUT_WSL_CONF",
           "{4} holds no /etc/wsl.conf: all users' drives are mounted, and the PATH of Windows is taken over.",
           "Put the file in if the hub is to see less; the page \"What the archive should hold\" says how."},
    Advice{"ARCHIVE_MAKES_SHORTCUTS",
           "WSL makes an entry in the Start menu, or a profile of Windows Terminal, for what is created from {4}.",
           "Put /etc/wsl-distribution.conf in, as the page \"What the archive should hold\" says."},
    Advice{"DOCKER_FOLDER_SMALL", "There may be too little room where Docker keeps its images; needed / free: {4}",
           "Make room there, or remove what is not used with \"docker system prune\"."},

    // What the doctor finds besides.
    Advice{"ROOT_MISSING", "The installation root {4} is no folder.",
           "Name the folder that the host product is installed in with --root or KORVANE_ROOT."},
    Advice{"WSL_VERSION_UNKNOWN",
           "No wsl.exe tells its version, so the one that Windows keeps is used; it may be an old one.",
           "Run \"wsl --update\" when WSL does not work as it should."},
    Advice{"ARCHIVE_NOT_INSTALLED", "There is no archive to create {2} from.",
           "Put {4} into the folder that is shown under \"archives\", or name an archive: \"{1} setup ARCHIVE\"."},
    Advice{"ARCHIVE_NOT_USABLE", "{4} is no archive that {2} could be created from.",
           "Put the file there once more from where it came, or name another archive: \"{1} setup ARCHIVE\"."},
    Advice{"ARCHIVE_PACKED_UNUSUALLY", "{4} is packed with zstd, which older versions of WSL and Docker cannot read.",
           "Pack it with gzip if \"{1} setup\" fails."},
    Advice{"TEMPORARY_FOLDER_NOT_USABLE",
           "The temporary folder, where WSL is to keep the distribution, does not exist or may not be written to: {4}",
           "Let TEMP (TMPDIR, where it is no Windows) name a folder that you may write to."},
    Advice{"TEMPORARY_FOLDER_SMALL",
           "There is too little room on the disk of the temporary folder, where WSL keeps the distribution; needed / "
           "free: {4}",
           "Make room, or name a folder on another disk: \"{1} setup --location DIR\"."},
    Advice{"DOCKER_NAME_INVALID", "Docker does not accept the name {2}: it wants lower-case letters and digits.",
           "Name the release in lower case with --release."},
    Advice{"DOCKER_RUNS_WINDOWS_CONTAINERS", "The Docker engine runs Windows containers.",
           "Switch to Linux containers in the menu of Docker Desktop."},
    Advice{
        "HOST_NETWORKING_OPTIONAL",
        "The engine is Docker Desktop. Unless its host networking is on, the hub starts and cannot be reached.",
        "In Docker Desktop 4.34 or later, switch on \"Enable host networking\" under Settings, Resources, Network, and "
        "start the container anew. If it is on already, there is nothing to do."},
    Advice{"DOCKER_IS_PODMAN", "What answers to Docker's name is podman, which kelpctl was not tried with.",
           "If something fails that should not, use Docker itself, or WSL with the flag --wsl."},
    Advice{
        "CREDENTIAL_HELPER_MISSING",
        "Docker's configuration (config.json) names {4} for passwords, and there is no such program. Some clients pull "
        "nothing then, others only what needs no login.",
        "Put the folder of {4} into PATH, or take its name out of \"credsStore\" and \"credHelpers\" in "
        ".docker/config.json in your user folder."},
    Advice{"SESSION_OF_SERVICES",
           "kelpctl runs in the session of services, as it does over SSH and as a scheduled task, where WSL often "
           "refuses.",
           "If something of WSL fails, run kelpctl in a session that the user has logged on to."},
    Advice{"OTHER_ACCOUNT", "The distribution {2} is registered for another account: {4}.",
           "Run kelpctl as that account, or create one for this account with \"{1} setup\": each has its own."},
    Advice{"WSL_KERNEL_MISSING", "The kernel that .wslconfig names does not exist: {4}",
           "Correct kernel= in .wslconfig in your user folder (each \"\\\" is written twice), or take the line out; "
           "then run \"wsl --shutdown\"."},
    Advice{"NETWORKING_WITHOUT_ADAPTER",
           "With networkingMode={4} in .wslconfig, Windows has no network adapter of WSL, by which setup sees that the "
           "distribution runs.",
           "If something waits for the adapter's address, set networkingMode=nat, and run \"wsl --shutdown\"."},
    Advice{"ENVIRONMENT_READY", "The environment is there.", "Run a program in it with \"{1} exec -- PROGRAM\"."},
};

// The key of an entry, or of none. A key that no entry has does not compile.
class AdviceKey {
public:
    AdviceKey() = default;
    consteval AdviceKey(const char* text) : text_(text)
    {
        bool known = false;
        for (const Advice& advice : allAdvice) {
            known = known || std::string_view(advice.key) == text;
        }
        if (!known) {
            throw "there is no advice of that key";
        }
    }

    // Of an entry that has been found.
    explicit constexpr AdviceKey(const Advice& advice) : text_(advice.key) {}

    constexpr const char* text() const { return text_; }
    constexpr bool empty() const { return *text_ == '\0'; }
    friend constexpr bool operator==(AdviceKey one, AdviceKey other)
    {
        return std::string_view(one.text_) == other.text_;
    }

private:
    const char* text_ = "";
};

} // namespace kelpctl
