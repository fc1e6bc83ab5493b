// What wsl.exe says: its texts, error codes and statuses, and the bytes that they become. How it comes to an answer is
// not told here, so that every program that plays wsl.exe takes its words from this one place. No system calls.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace stand_in {

// The status of every failure that is wsl.exe's own.
inline constexpr int ownFailure = -1;

// Line ends and letters of wsl.exe's own text; what Linux programs print is never converted.
struct Encoding {
    // UTF-16LE without a byte order mark otherwise.
    bool utf8 = false;
    // Each line feed becomes this.
    std::string_view lineEnd = "\r\n";
};

std::string encoded(std::string_view text, const Encoding& encoding = {});

// A text, in which "{}" stands for an argument, and the path of the code that follows it; some have no code.
struct KnownFailure {
    std::string_view text;
    std::string_view code;
};

// The lines of a failure, in the words given: the text is complete, `codeLine` is "Error code: {}" or its translation.
std::string failureLines(std::string_view text, std::string_view code, std::string_view codeLine);
// The same in English.
std::string failureLines(const KnownFailure& failure, std::string_view argument = {});

std::string withArgument(std::string_view text, std::string_view argument);

inline constexpr std::string_view errorCode = "Error code: {}";
inline constexpr std::string_view succeeded = "The operation completed successfully. ";
inline constexpr std::string_view wslVersion = "2.6.1.0";

// A message that comes from inside, in UTF-8 with LF, and the status of a program that cannot be started there.
std::string relayError(std::int64_t process, std::string_view function, int line, std::string_view call,
                       std::string_view reason);
inline constexpr int programNotStarted = 1;

namespace failures {

// The client's own.
inline constexpr KnownFailure badParameter{"The parameter is incorrect. ", "Wsl/E_INVALIDARG"};
inline constexpr KnownFailure folderMissing{"The system cannot find the path specified. ", "Wsl/ERROR_PATH_NOT_FOUND"};
inline constexpr KnownFailure fileMissing{"The system cannot find the file specified. ", "Wsl/ERROR_FILE_NOT_FOUND"};
inline constexpr KnownFailure accessDenied{"Access is denied. ", "Wsl/E_ACCESSDENIED"};
inline constexpr KnownFailure virtualDiskFile{"This looks like a VHD file. Use --vhd to import a VHD instead of a tar.",
                                              ""};
inline constexpr KnownFailure userUnknown{"User not found.", "Wsl/WSL_E_USER_NOT_FOUND"};
inline constexpr KnownFailure tooManyTerminals{"The maximum number of terminals has been reached.",
                                               "Wsl/WSL_E_TTY_LIMIT"};
// Of builds that Windows itself brings; a usage text follows.
inline constexpr KnownFailure unknownToInbox{"Invalid command line option: {}", ""};
inline constexpr KnownFailure noneRunning{"There are no running distributions.", ""};
inline constexpr KnownFailure noneInstalled{
    "Windows Subsystem for Linux has no installed distributions.\n"
    "You can resolve this by installing a distribution with the instructions below:\n"
    "\n"
    "Use 'wsl.exe --list --online' to list available distributions\n"
    "and 'wsl.exe --install <Distro>' to install.",
    ""};

// The service's.
inline constexpr KnownFailure unknownDistribution{"There is no distribution with the supplied name.",
                                                  "Wsl/Service/WSL_E_DISTRO_NOT_FOUND"};
inline constexpr KnownFailure distributionBusy{
    "An install, uninstall, or conversion is in progress for this distribution.", "Wsl/Service/E_ILLEGAL_STATE_CHANGE"};
inline constexpr KnownFailure localSystem{"Running WSL as local system is not supported.",
                                          "Wsl/Service/WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED"};
inline constexpr KnownFailure catastrophe{"Catastrophic failure ", "Wsl/Service/E_UNEXPECTED"};

// The service's when a distribution's disk was taken away by hand.
inline constexpr KnownFailure diskGone{
    "Failed to attach disk '{}' to WSL2: The system cannot find the file specified. ",
    "Wsl/Service/CreateInstance/MountDisk/HCS/ERROR_FILE_NOT_FOUND"};
inline constexpr KnownFailure diskGoneWithItsFolder{
    "Failed to attach disk '{}' to WSL2: The system cannot find the path specified. ",
    "Wsl/Service/CreateInstance/MountDisk/HCS/ERROR_PATH_NOT_FOUND"};

// The service's while it registers.
inline constexpr KnownFailure nameTaken{
    "A distribution with the supplied name already exists. Use --name to choose a different name.",
    "Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS"};
inline constexpr KnownFailure nameBusy{"An install, uninstall, or conversion is in progress for this distribution.",
                                       "Wsl/Service/RegisterDistro/E_ILLEGAL_STATE_CHANGE"};
inline constexpr KnownFailure nameInvalid{"Invalid distribution name: \"{}\".",
                                          "Wsl/Service/RegisterDistro/E_INVALIDARG"};
inline constexpr KnownFailure folderTaken{"The supplied install location is already in use.",
                                          "Wsl/Service/RegisterDistro/ERROR_FILE_EXISTS"};
inline constexpr KnownFailure diskExists{"Failed to create disk '{}': The file exists. ",
                                         "Wsl/Service/RegisterDistro/ERROR_FILE_EXISTS"};
inline constexpr KnownFailure diskFolderMissing{"The system cannot find the path specified. ",
                                                "Wsl/Service/RegisterDistro/ERROR_PATH_NOT_FOUND"};
inline constexpr KnownFailure importFailed{"Importing the distribution failed.",
                                           "Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED"};
inline constexpr KnownFailure notLinux{"The imported file is not a valid Linux distribution.",
                                       "Wsl/Service/RegisterDistro/WSL_E_NOT_A_LINUX_DISTRO"};

// What builds of 2023 said in their place.
inline constexpr KnownFailure oldNameTaken{"A distribution with the supplied name already exists.",
                                           "Wsl/Service/0x800700b7"};
inline constexpr KnownFailure oldNameBusy{"An install, uninstall, or conversion is in progress for this distribution.",
                                          "Wsl/Service/0x8000000d"};
inline constexpr KnownFailure oldNameInvalid{"The parameter is incorrect. ", "Wsl/Service/E_INVALIDARG"};

// The virtual machine's, whatever it was wanted for: the codes stand behind "Wsl/Service/RegisterDistro/" and the like.
inline constexpr KnownFailure virtualisationOff{
    "WSL2 is unable to start since virtualization is not enabled on this machine.\n"
    "Please enable the \"Virtual Machine Platform\" optional component and ensure virtualization is enabled in the "
    "BIOS.\n"
    "Enable \"Virtual Machine Platform\" by running: wsl.exe --install --no-distribution\n"
    "For information please visit https://aka.ms/enablevirtualization",
    "CreateVm/HCS/HCS_E_HYPERV_NOT_INSTALLED"};
inline constexpr KnownFailure componentMissing{
    "The operation could not be started because a required feature is not installed. ",
    "CreateVm/HCS/HCS_E_SERVICE_NOT_AVAILABLE"};

} // namespace failures

} // namespace stand_in
