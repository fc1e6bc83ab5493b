#include "failure/advice.h"

#include "host/messages.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kelpctl {
namespace {

constexpr char catalogue[] = "kelpctl";

// The longer of two that end alike comes first.
constexpr std::array codes = {
    WslCode{"MountVhd/HCS/ERROR_FILE_NOT_FOUND", "WSL_DISK_MISSING"},
    WslCode{"MountVhd/HCS/ERROR_PATH_NOT_FOUND", "WSL_DISK_MISSING"},
    WslCode{"ERROR_FILE_NOT_FOUND", "WSL_FILE_MISSING"},
    WslCode{"0x80070002", "WSL_FILE_MISSING"},
    WslCode{"ERROR_PATH_NOT_FOUND", "WSL_PATH_MISSING"},
    WslCode{"0x80070003", "WSL_PATH_MISSING"},
    WslCode{"ERROR_ALREADY_EXISTS", "WSL_NAME_TAKEN"},
    WslCode{"0x800700b7", "WSL_NAME_TAKEN"},
    WslCode{"ERROR_FILE_EXISTS", "WSL_LOCATION_TAKEN"},
    WslCode{"0x80070050", "WSL_LOCATION_TAKEN"},
    WslCode{"E_ILLEGAL_STATE_CHANGE", "WSL_BUSY"},
    WslCode{"0x8000000d", "WSL_BUSY"},
    WslCode{"E_INVALIDARG", "WSL_NAME_INVALID"},
    WslCode{"0x80070057", "WSL_NAME_INVALID"},
    WslCode{"E_ACCESSDENIED", "WSL_ACCESS_DENIED"},
    WslCode{"0x80070005", "WSL_ACCESS_DENIED"},
    WslCode{"E_UNEXPECTED", "WSL_SERVICE_BROKEN"},
    WslCode{"0x8000ffff", "WSL_SERVICE_BROKEN"},
    WslCode{"WSL_E_IMPORT_FAILED", "WSL_ARCHIVE_BROKEN"},
    WslCode{"WSL_E_NOT_A_LINUX_DISTRO", "WSL_ARCHIVE_NOT_LINUX"},
    WslCode{"WSL_E_DISTRO_NOT_FOUND", "WSL_DISTRIBUTION_UNKNOWN"},
    WslCode{"WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED", "WSL_SYSTEM_ACCOUNT"},
    WslCode{"WSL_E_VIRTUAL_MACHINE_PLATFORM_REQUIRED", "WSL_VIRTUALISATION_OFF"},
    WslCode{"HCS_E_HYPERV_NOT_INSTALLED", "WSL_VIRTUALISATION_OFF"},
    WslCode{"0x80370102", "WSL_VIRTUALISATION_OFF"},
    WslCode{"HCS_E_SERVICE_NOT_AVAILABLE", "WSL_COMPONENT_MISSING"},
    WslCode{"WSL_E_WSL_OPTIONAL_COMPONENT_REQUIRED", "WSL_COMPONENT_MISSING"},
    WslCode{"WSL_E_WSL1_NOT_SUPPORTED", "WSL_COMPONENT_MISSING"},
    WslCode{"0xc03a001a", "WSL_DISK_ATTRIBUTES"},
    WslCode{"ERROR_DISK_FULL", "WSL_DISK_FULL"},
    WslCode{"0x80070070", "WSL_DISK_FULL"},
    WslCode{"HCS_E_CONNECTION_TIMEOUT", "WSL_TIMED_OUT"},
    WslCode{"WSL_E_DISTRO_NOT_STOPPED", "WSL_BUSY"},
    WslCode{"WSL_E_USER_NOT_FOUND", "WSL_STATUS_67"},
    WslCode{"WSL_E_TTY_LIMIT", "WSL_STATUS_87"},
};

constexpr std::string_view pathStart = "Wsl/";

bool isPathCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '/';
}

const Advice* find(std::string_view key)
{
    const auto found =
        std::find_if(allAdvice.begin(), allAdvice.end(), [key](const Advice& advice) { return key == advice.key; });
    return found == allAdvice.end() ? nullptr : &*found;
}

std::string localised(const std::string& key, const std::string& english, const Names& names)
{
    using namespace foundation::core::message;
    return localisedText({catalogue, key, {names.invocation, names.image, names.container, names.subject}}, english);
}

} // namespace

const Advice& adviceFor(AdviceKey key)
{
    const Advice* found = find(key.text());
    return found == nullptr ? *find("UNEXPECTED_ERROR") : *found;
}

AdviceKey adviceKey(std::string_view identifier)
{
    const Advice* found = find(identifier);
    return found == nullptr ? AdviceKey("UNEXPECTED_ERROR") : AdviceKey(*found);
}

std::string adviceText(const Advice& advice, const Names& names)
{
    return localised(advice.key, advice.text, names);
}

std::string adviceNextStep(const Advice& advice, const Names& names)
{
    return localised(std::string(advice.key) + ".next", advice.nextStep, names);
}

bool hasCatalogue(const std::string& language)
{
    return foundation::core::message::hasLanguage(catalogue, language);
}

std::span<const WslCode> wslCodes()
{
    return codes;
}

AdviceKey causeOfWslCode(std::string_view codePath)
{
    const auto found = std::find_if(codes.begin(), codes.end(), [codePath](const WslCode& known) {
        return codePath.ends_with(std::string("/") + known.code);
    });
    return found == codes.end() ? AdviceKey() : found->cause;
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

} // namespace kelpctl
