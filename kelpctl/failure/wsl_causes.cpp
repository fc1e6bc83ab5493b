#include "failure/wsl_causes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace kelpctl {
namespace {

constexpr std::string_view notFound = "ERROR_FILE_NOT_FOUND ERROR_PATH_NOT_FOUND";
constexpr std::string_view noDrive = "ERROR_NOT_READY ERROR_DEVICE_REMOVED ERROR_NO_SUCH_DEVICE ERROR_INVALID_DRIVE "
                                     "ERROR_BAD_NET_NAME ERROR_NETNAME_DELETED ERROR_UNRECOGNIZED_VOLUME";
constexpr std::string_view denied = "E_ACCESSDENIED STATUS_ACCESS_DENIED";
constexpr std::string_view inUse = "ERROR_SHARING_VIOLATION WSL_E_USER_VHD_ALREADY_ATTACHED ERROR_DRIVE_LOCKED";
constexpr AdviceKey none;

// From the special to the general. What contexts mean: without Service it is the client's own doing; CreateVm is before
// any distribution is touched, MountDisk (MountVhd until 2.4) is a distribution's disk; CallMsi, Install and
// UpdatePackage are WSL's own installation. Codes have the names that Windows and WSL give them.
constexpr auto table = std::to_array<WslCause>({
    // What keeps WSL's virtual machine from starting.
    {"Plugin", "", "WSL_PLUGIN"},
    {"", "WSL_E_PLUGIN_REQUIRES_UPDATE", "WSL_PLUGIN"},
    {"ParseConfig", "", "WSL_CONFIGURATION"},
    {"", "WSL_E_CUSTOM_KERNEL_NOT_FOUND WSL_E_CUSTOM_SYSTEM_DISTRO_ERROR", "WSL_CONFIGURATION"},
    {"", "WSL_E_VMSWITCH_NOT_FOUND WSL_E_VMSWITCH_NOT_SET", "WSL_CONFIGURATION"},
    {"CreateVm", "E_INVALIDARG", "WSL_CONFIGURATION"},
    {"", "HCS_E_HYPERV_NOT_INSTALLED WSL_E_VIRTUAL_MACHINE_PLATFORM_REQUIRED", "WSL_VIRTUALISATION_OFF"},
    {"", "HCS_E_SERVICE_NOT_AVAILABLE WSL_E_WSL_OPTIONAL_COMPONENT_REQUIRED WSL_E_WSL1_NOT_SUPPORTED",
     "WSL_COMPONENT_MISSING"},
    {"", "E_OUTOFMEMORY ERROR_NO_SYSTEM_RESOURCES ERROR_COMMITMENT_LIMIT WSAENOBUFS", "WSL_MEMORY"},
    {"", "ERROR_ACCESS_DISABLED_BY_POLICY ERROR_LOGON_TYPE_NOT_GRANTED WSL_E_WSL1_DISABLED", "WSL_POLICY"},
    {"ConfigureNetworking HNS", "", "WSL_NETWORK"},
    {"CreateVm", notFound, "WSL_INSTALLATION_INCOMPLETE"},
    {"CreateVm", denied, "WSL_FILES_DENIED"},
    {"CreateVm", inUse, "WSL_DISK_IN_USE"},

    // Disks that others attach with wsl.exe, and what else kelpctl never asks for.
    {"AttachDisk DetachDisk MoveDistro ExportDistro SetVersion SetDefaultDistro DebugShell WslC", "", none},

    // A distribution's disk, and its entry in the registry.
    {"MountDisk MountVhd", notFound, "WSL_DISK_MISSING"},
    {"MountDisk MountVhd", noDrive, "WSL_DISK_MISSING"},
    {"MountDisk MountVhd", denied, "WSL_DISK_DENIED"},
    {"MountDisk MountVhd", inUse, "WSL_DISK_IN_USE"},
    {"CreateInstance", notFound, "WSL_DISK_MISSING"},
    {"", "WSL_E_DISK_CORRUPTED ERROR_FILE_CORRUPT", "WSL_DISK_DAMAGED"},
    {"", "ERROR_VIRTUAL_DISK_LIMITATION", "WSL_DISK_ATTRIBUTES"},
    {"", "ERROR_DISK_FULL", "WSL_DISK_FULL"},
    {"", "WSL_E_DISTRO_NOT_FOUND", "WSL_DISTRIBUTION_UNKNOWN"},
    {"ReadDistroConfig", "E_UNEXPECTED ERROR_UNSUPPORTED_TYPE ERROR_INVALID_DATA", "WSL_ENTRY_BROKEN"},
    {"", "E_ILLEGAL_STATE_CHANGE WSL_E_DISTRO_NOT_STOPPED", "WSL_BUSY"},

    // WSL's own installation, and what it downloads.
    {"", "WININET_E_CANNOT_CONNECT WININET_E_NAME_NOT_RESOLVED WININET_E_TIMEOUT WININET_E_CONNECTION_ABORTED",
     "WSL_DOWNLOAD_FAILED"},
    {"", "WININET_E_CONNECTION_RESET WININET_E_INVALID_CA WININET_E_INVALID_SERVER_RESPONSE", "WSL_DOWNLOAD_FAILED"},
    {"", "WININET_E_SECURITY_CHANNEL_ERROR CERT_E_UNTRUSTEDROOT HTTP_E_STATUS_BAD_GATEWAY", "WSL_DOWNLOAD_FAILED"},
    {"", "HTTP_E_STATUS_FORBIDDEN HTTP_E_STATUS_NOT_FOUND HTTP_E_STATUS_SERVICE_UNAVAIL", "WSL_DOWNLOAD_FAILED"},
    {"UpdatePackage QueryLatestGitHubRelease", "", "WSL_DOWNLOAD_FAILED"},
    {"InstallDistro VerifyChecksum", "", none},
    {"", "ERROR_INSTALL_ALREADY_RUNNING ERROR_SUCCESS_REBOOT_INITIATED", "WSL_BEING_INSTALLED"},
    {"CallMsi Install", "ERROR_CANCELLED ERROR_INSTALL_USEREXIT", none},
    {"CallMsi Install", "", "WSL_INSTALLATION_BROKEN"},
    {"", "REGDB_E_CLASSNOTREG ERROR_MOD_NOT_FOUND ERROR_SERVICE_DOES_NOT_EXIST ERROR_BAD_EXE_FORMAT",
     "WSL_INSTALLATION_BROKEN"},
    {"", "WSL_E_INSTALL_PROCESS_FAILED WSL_E_INSTALL_COMPONENT_FAILED E_NOINTERFACE", "WSL_INSTALLATION_BROKEN"},
    {"", "0x80040153", "WSL_INSTALLATION_BROKEN"},

    // The service, or the machine behind it.
    {"", "ERROR_SERVICE_DISABLED ERROR_SERVICE_NOT_ACTIVE", "WSL_SERVICE_OFF"},
    {"", "RPC_S_CALL_FAILED RPC_S_CALL_FAILED_DNE RPC_S_CALL_CANCELLED RPC_S_SERVER_UNAVAILABLE RPC_S_UNKNOWN_IF",
     "WSL_SERVICE_GONE"},
    {"", "RPC_E_DISCONNECTED RPC_E_CALL_CANCELED CO_E_SERVER_EXEC_FAILURE ERROR_PIPE_NOT_CONNECTED ERROR_NO_DATA",
     "WSL_SERVICE_GONE"},
    {"", "WSL_E_VM_CRASHED HCS_E_TERMINATED HCS_E_SYSTEM_ALREADY_STOPPED STATUS_CONNECTION_DISCONNECTED",
     "WSL_SERVICE_GONE"},
    {"", "ERROR_CONNECTION_ABORTED WSAECONNABORTED WSAECONNREFUSED WSAECONNRESET WSAENOTCONN", "WSL_SERVICE_GONE"},
    {"", "E_UNEXPECTED ERROR_UNHANDLED_EXCEPTION", "WSL_SERVICE_BROKEN"},
    {"", "HCS_E_CONNECTION_TIMEOUT ERROR_TIMEOUT ERROR_SEM_TIMEOUT WSAETIMEDOUT", "WSL_TIMED_OUT"},
    {"", "WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED", "WSL_SYSTEM_ACCOUNT"},

    // What was to be imported, and where to.
    {"", "ERROR_FILE_NOT_FOUND", "WSL_FILE_MISSING", Reach::archive},
    {"", "ERROR_PATH_NOT_FOUND", "WSL_PATH_MISSING", Reach::archive},
    {"", "ERROR_SHARING_VIOLATION", "WSL_ARCHIVE_IN_USE", Reach::archive},
    {"RegisterDistro", "ERROR_PATH_NOT_FOUND", "WSL_PATH_MISSING"},
    {"", denied, "WSL_ACCESS_DENIED", Reach::import},
    {"", "ERROR_ALREADY_EXISTS", "WSL_NAME_TAKEN", Reach::import},
    {"", "ERROR_FILE_EXISTS", "WSL_LOCATION_TAKEN", Reach::import},
    {"", "E_INVALIDARG", "WSL_NAME_INVALID", Reach::import},
    {"", "WSL_E_IMPORT_FAILED", "WSL_ARCHIVE_BROKEN"},
    {"", "WSL_E_NOT_A_LINUX_DISTRO", "WSL_ARCHIVE_NOT_LINUX"},

    // What was to be run.
    {"", "WSL_E_USER_NOT_FOUND", "WSL_STATUS_67"},
    {"", "WSL_E_TTY_LIMIT", "WSL_STATUS_87"},
    {"", denied, "WSL_SERVICE_REFUSES"},
    {"Service", "ERROR_SHARING_VIOLATION", "WSL_DISK_IN_USE"},

    // Too much can be missing for a guess.
    {"", notFound, "WSL_CODE_UNKNOWN"},

    // The rest is told by wsl.exe's own sentence, or says nothing of the cause to anybody.
    {"", "E_FAIL E_ABORT E_NOTIMPL E_INVALIDARG ERROR_ALREADY_EXISTS ERROR_FILE_EXISTS ERROR_NOT_FOUND", none},
    {"", "ERROR_NOT_SUPPORTED ERROR_GEN_FAILURE ERROR_INVALID_DATA ERROR_INVALID_FUNCTION ERROR_INVALID_HANDLE", none},
    {"", "ERROR_INVALID_NAME ERROR_INVALID_STATE ERROR_BAD_PATHNAME ERROR_UNSUPPORTED_TYPE ERROR_VERSION_PARSE_ERROR",
     none},
    {"", "ERROR_CANCELLED ERROR_OPERATION_ABORTED ERROR_SHUTDOWN_IN_PROGRESS STATUS_SHUTDOWN_IN_PROGRESS", none},
    {"", "ERROR_ELEVATION_REQUIRED ERROR_BAD_IMPERSONATION_LEVEL ERROR_BAD_INHERITANCE_ACL ERROR_INVALID_SID", none},
    {"", "ERROR_INVALID_SECURITY_DESCR ERROR_NOT_SAFEBOOT_SERVICE ERROR_PIPE_BUSY ERROR_INSTALL_FAILURE", none},
    {"", "ERROR_INSTALL_LOG_FAILURE ERROR_INSTALL_PACKAGE_OPEN_FAILED ERROR_INSTALL_USEREXIT", none},
    {"", "ERROR_DISK_REPAIR_DISABLED ERROR_FILE_SYSTEM_LIMITATION ERROR_VIRTDISK_PROVIDER_NOT_FOUND", none},
    {"", noDrive, none},
    {"", inUse, none},
    {"", "FVE_E_LOCKED_VOLUME E_INVALID_PROTOCOL_FORMAT HCN_E_ADDR_INVALID_OR_RESERVED HCS_E_INVALID_JSON", none},
    {"", "VM_E_INVALID_STATE RPC_S_SYSTEM_HANDLE_TYPE_MISMATCH STATUS_INVALID_PARAMETER STATUS_RETRY", none},
    {"", "TRUST_E_BAD_DIGEST TRUST_E_NOSIGNATURE WSAEACCES WSAEADDRINUSE WSAEADDRNOTAVAIL WSAEOPNOTSUPP", none},
    {"", "WSL_E_CONSOLE WSL_E_DEFAULT_DISTRO_NOT_FOUND WSL_E_DISK_ALREADY_ATTACHED WSL_E_DISK_ALREADY_MOUNTED", none},
    {"", "WSL_E_DISK_MOUNT_DISABLED WSL_E_DISK_MOUNT_FAILED WSL_E_DISK_UNMOUNT_FAILED WSL_E_EXPORT_FAILED", none},
    {"", "WSL_E_DISTRIBUTION_NAME_NEEDED WSL_E_DISTRO_ONLY_AVAILABLE_FROM_STORE WSL_E_ELEVATION_NEEDED_TO_MOUNT_DISK",
     none},
    {"", "WSL_E_FS_UPGRADE_NEEDED WSL_E_GUI_APPLICATIONS_DISABLED WSL_E_HIGHER_INTEGRITY WSL_E_LOWER_INTEGRITY", none},
    {"", "WSL_E_INVALID_JSON WSL_E_INVALID_USAGE WSL_E_OS_NOT_SUPPORTED WSL_E_TOO_MANY_DISKS_ATTACHED", none},
    {"", "WSL_E_VM_MODE_INVALID_MOUNT_NAME WSL_E_VM_MODE_INVALID_STATE WSL_E_VM_MODE_MOUNT_NAME_ALREADY_EXISTS", none},
    {"", "WSL_E_VM_MODE_NOT_SUPPORTED WSL_E_WSL2_NEEDED WSL_E_WSL_MOUNT_NOT_SUPPORTED", none},
    {"", "WSLC_E_CONTAINER_DISABLED WSLC_E_CONTAINER_IS_RUNNING WSLC_E_CONTAINER_NOT_FOUND", none},
    {"", "WSLC_E_CONTAINER_NOT_RUNNING WSLC_E_CONTAINER_PREFIX_AMBIGUOUS WSLC_E_IMAGE_NOT_FOUND", none},
    {"", "WSLC_E_INVALID_SESSION_NAME WSLC_E_NETWORK_NOT_FOUND WSLC_E_REGISTRY_BLOCKED_BY_POLICY", none},
    {"", "WSLC_E_SESSION_NOT_FOUND WSLC_E_SESSION_RESERVED WSLC_E_VM_NOT_RUNNING WSLC_E_VOLUME_NOT_AVAILABLE", none},
    {"", "WSLC_E_VOLUME_NOT_FOUND WSLC_E_WU_SEARCH_FAILED", none},
});

constexpr std::string_view knownContexts =
    "Wsl Wslg Bash WslConfig InstallDistro EnumerateDistros Service RegisterDistro CreateInstance AttachDisk "
    "DetachDisk "
    "CreateVm ParseConfig ConfigureNetworking ConfigureGpu LaunchProcess ConfigureDistro CreateLxProcess "
    "UnregisterDistro ExportDistro GetDistroConfiguration GetDistroId SetDefaultDistro SetVersion TerminateDistro "
    "RegisterLxBus MountDisk MountVhd Plugin MoveDistro GetDefaultDistro DebugShell HCS HNS CallMsi Install "
    "ReadDistroConfig UpdatePackage QueryLatestGitHubRelease VerifyChecksum WslC";

// Older versions have fewer names, and print the number.
struct CodeNumber {
    std::uint32_t number;
    std::string_view name;
};

constexpr auto numbers = std::to_array<CodeNumber>({
    {0x80004005, "E_FAIL"},
    {0x8000000d, "E_ILLEGAL_STATE_CHANGE"},
    {0x8000ffff, "E_UNEXPECTED"},
    {0x80010108, "RPC_E_DISCONNECTED"},
    {0x80040154, "REGDB_E_CLASSNOTREG"},
    {0x80070002, "ERROR_FILE_NOT_FOUND"},
    {0x80070003, "ERROR_PATH_NOT_FOUND"},
    {0x80070005, "E_ACCESSDENIED"},
    {0x8007000e, "E_OUTOFMEMORY"},
    {0x80070020, "ERROR_SHARING_VIOLATION"},
    {0x80070050, "ERROR_FILE_EXISTS"},
    {0x80070057, "E_INVALIDARG"},
    {0x80070070, "ERROR_DISK_FULL"},
    {0x8007007e, "ERROR_MOD_NOT_FOUND"},
    {0x800700b7, "ERROR_ALREADY_EXISTS"},
    {0x80070422, "ERROR_SERVICE_DISABLED"},
    {0x80070424, "ERROR_SERVICE_DOES_NOT_EXIST"},
    {0x80070426, "ERROR_SERVICE_NOT_ACTIVE"},
    {0x800704ec, "ERROR_ACCESS_DISABLED_BY_POLICY"},
    {0x80070569, "ERROR_LOGON_TYPE_NOT_GRANTED"},
    {0x80070570, "ERROR_FILE_CORRUPT"},
    {0x800705aa, "ERROR_NO_SYSTEM_RESOURCES"},
    {0x800705af, "ERROR_COMMITMENT_LIMIT"},
    {0x800706ba, "RPC_S_SERVER_UNAVAILABLE"},
    {0x800706be, "RPC_S_CALL_FAILED"},
    {0x800706bf, "RPC_S_CALL_FAILED_DNE"},
    {0x80080005, "CO_E_SERVER_EXEC_FAILURE"},
    {0x80370102, "HCS_E_HYPERV_NOT_INSTALLED"},
    {0x80370109, "HCS_E_CONNECTION_TIMEOUT"},
    {0x80370114, "HCS_E_SERVICE_NOT_AVAILABLE"},
    {0xc03a001a, "ERROR_VIRTUAL_DISK_LIMITATION"},
});

bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isNameCharacter(char c)
{
    return isLetterOrDigit(c) || c == '_';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

template <class Condition>
std::size_t lengthOf(std::string_view text, Condition condition)
{
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), condition) - text.begin());
}

// The words of a row are separated by blanks.
bool hasWord(std::string_view words, std::string_view word)
{
    for (std::size_t start = words.find(word); start != std::string_view::npos; start = words.find(word, start + 1)) {
        const std::size_t end = start + word.size();
        if ((start == 0 || words[start - 1] == ' ') && (end == words.size() || words[end] == ' ')) {
            return true;
        }
    }
    return false;
}

std::optional<std::uint32_t> numberOf(std::string_view code)
{
    constexpr std::string_view start = "0x";
    if (!code.starts_with(start) || code.size() == start.size()) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(code.data() + start.size(), code.data() + code.size(), number, 16);
    return error == std::errc() && end == code.data() + code.size() ? std::optional(number) : std::nullopt;
}

// Contexts have small letters, except for two (HCS, HNS) that are shorter than any code.
bool isCode(std::string_view part)
{
    constexpr std::size_t shortest = 4;
    const bool named = lengthOf(part, [](char c) { return isNameCharacter(c) && (c < 'a' || c > 'z'); }) == part.size();
    return numberOf(part) || (named && part.size() >= shortest && !isDigit(part.front()));
}

bool isContext(std::string_view part)
{
    return hasWord(knownContexts, part);
}

// A name, or what wsl.exe prints for a context that it has no name for: "?(8192)". 0 when neither begins the text.
std::size_t lengthOfPart(std::string_view text)
{
    constexpr std::string_view start = "?(";
    if (!text.starts_with(start)) {
        return lengthOf(text, isNameCharacter);
    }
    const std::size_t end = start.size() + lengthOf(text.substr(start.size()), isDigit);
    return end < text.size() && text[end] == ')' ? end + 1 : 0;
}

std::size_t lengthOfPath(std::string_view text)
{
    std::size_t length = lengthOfPart(text);
    while (length < text.size() && text[length] == '/') {
        const std::size_t next = lengthOfPart(text.substr(length + 1));
        if (next == 0) {
            break;
        }
        length += 1 + next;
    }
    return length;
}

struct Parts {
    std::string_view contexts;
    std::string_view code;
};

Parts partsOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? Parts{path, {}} : Parts{path.substr(0, slash), path.substr(slash + 1)};
}

template <class Condition>
bool anyPart(std::string_view path, Condition condition)
{
    while (!path.empty()) {
        const std::size_t length = std::min(path.find('/'), path.size());
        if (condition(path.substr(0, length))) {
            return true;
        }
        path.remove_prefix(std::min(length + 1, path.size()));
    }
    return false;
}

// A file may have such a name as well. A path ends with a code, or, when it was cut, has a known context behind the first.
bool isCodePath(std::string_view path)
{
    const std::size_t second = path.find('/') + 1;
    return isCode(partsOf(path).code) ||
           (second != 0 && isContext(path.substr(second, path.find('/', second) - second)));
}

// As today's wsl.exe names it.
std::string_view nameOfCode(std::string_view code)
{
    const std::optional<std::uint32_t> number = numberOf(code);
    const auto found = std::find_if(numbers.begin(), numbers.end(),
                                    [number](const CodeNumber& each) { return number == each.number; });
    return found == numbers.end() ? code : found->name;
}

// A path as rows ask about it.
struct Question {
    std::string_view contexts;
    // The code's name of today.
    std::string_view code;
    // All contexts are known.
    bool understood = false;
    WslWork work = WslWork::other;
};

bool reaches(Reach reach, const Question& question)
{
    const bool imports = question.work == WslWork::import;
    switch (reach) {
    case Reach::any:
        return true;
    case Reach::import:
        return imports;
    case Reach::archive:
        break;
    }
    return imports && question.contexts == "Wsl";
}

bool holds(const WslCause& row, const Question& question)
{
    const bool within =
        row.contexts.empty() || (question.understood && anyPart(question.contexts, [&row](std::string_view part) {
                                     return hasWord(row.contexts, part);
                                 }));
    return within && (row.codes.empty() || hasWord(row.codes, question.code)) && reaches(row.reach, question);
}

} // namespace

std::string wslCodePath(std::string_view text)
{
    constexpr std::string_view start = "Wsl/";
    std::string_view last;
    for (std::size_t at = text.find(start); at != std::string_view::npos; at = text.find(start, at + 1)) {
        if (at > 0 && (isNameCharacter(text[at - 1]) || text[at - 1] == '/' || text[at - 1] == '\\')) {
            // Part of a longer word, or of another path.
            continue;
        }
        const std::string_view path = text.substr(at, lengthOfPath(text.substr(at)));
        if (isCodePath(path)) {
            last = path;
        }
    }
    return std::string(last);
}

AdviceKey causeOfWslPath(std::string_view path, WslWork work)
{
    if (path.empty()) {
        return {};
    }
    const Parts parts = partsOf(path);
    if (!isCode(parts.code)) {
        return "WSL_CODE_UNKNOWN";
    }
    const bool understood = !anyPart(parts.contexts, [](std::string_view part) { return !isContext(part); });
    const Question question{parts.contexts, nameOfCode(parts.code), understood, work};
    const auto row =
        std::find_if(table.begin(), table.end(), [&question](const WslCause& each) { return holds(each, question); });
    return row == table.end() ? AdviceKey("WSL_CODE_UNKNOWN") : row->cause;
}

std::span<const WslCause> wslCauses()
{
    return table;
}

} // namespace kelpctl
