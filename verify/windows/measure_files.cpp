#include "measure_files.h"

#include "programs.h"
#include "system.h"

#include "host/files.h"
#include "host/network.h"
#include "host/process.h"
#include "host/text.h"

#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>
#include <vector>

#include <windows.h>
#include <winioctl.h>

namespace verify {

namespace fs = std::filesystem;

namespace {

Answer saying(std::string text)
{
    Answer answer;
    answer.output = std::move(text);
    return answer;
}

Answer unable(std::string why)
{
    Answer answer;
    answer.unable = std::move(why);
    return answer;
}

fs::path work(const Names& names)
{
    return pathOf(names.get("<work>"));
}

// What follows the tag in a junction's data.
struct JunctionData {
    DWORD tag;
    WORD length;
    WORD reserved;
    WORD nameOffset;
    WORD nameLength;
    WORD shownOffset;
    WORD shownLength;
};

// Makes an empty folder a junction. The system has no call for it but this one.
bool makeJunction(const fs::path& folder, const fs::path& target)
{
    constexpr DWORD setReparsePoint = 0x000900A4;
    constexpr DWORD mountPoint = 0xA0000003;
    constexpr WORD header = 8;
    const std::wstring name = L"\\??\\" + target.native();
    const auto bytes = static_cast<WORD>(name.size() * sizeof(wchar_t));
    const auto paths = static_cast<WORD>(bytes + 2 * sizeof(wchar_t));
    const JunctionData data{mountPoint, static_cast<WORD>(header + paths),          0, 0,
                            bytes,      static_cast<WORD>(bytes + sizeof(wchar_t)), 0};
    std::vector<char> buffer(sizeof data + paths, '\0');
    std::memcpy(buffer.data(), &data, sizeof data);
    std::memcpy(buffer.data() + sizeof data, name.data(), bytes);
    fs::create_directory(folder);
    const HANDLE handle = CreateFileW(folder.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    DWORD done = 0;
    const BOOL made = DeviceIoControl(handle, setReparsePoint, buffer.data(), static_cast<DWORD>(buffer.size()),
                                      nullptr, 0, &done, nullptr);
    CloseHandle(handle);
    return made != FALSE;
}

// Nothing when the account may not.
bool makeSymbolicLink(const fs::path& link, const fs::path& target)
{
    constexpr DWORD unprivileged = 2;
    return CreateSymbolicLinkW(link.c_str(), target.c_str(), unprivileged) != FALSE;
}

std::string sizeByHandle(const fs::path& file)
{
    const HANDLE handle =
        CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    LARGE_INTEGER size{};
    const BOOL known = GetFileSizeEx(handle, &size);
    CloseHandle(handle);
    return known != FALSE ? std::to_string(size.QuadPart) : "unknown";
}

std::string sizeByFolder(const fs::path& file)
{
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(file.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return "unknown";
    }
    FindClose(search);
    return std::to_string(found.nFileSizeLow);
}

std::string narrow(const wchar_t* text)
{
    return utf8(fs::path(text));
}

std::string registryText(HKEY key, const wchar_t* name)
{
    std::array<wchar_t, 1024> value{};
    DWORD size = sizeof value;
    return RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, value.data(), &size) == ERROR_SUCCESS
               ? narrow(value.data())
               : "";
}

std::string withoutPrefix(const std::string& path)
{
    return path.starts_with(R"(\\?\)") ? path.substr(4) : path;
}

} // namespace

Answer longPath(const std::string& /*argument*/, const Names& names)
{
    constexpr std::size_t longest = 260;
    fs::path folder = work(names);
    while (folder.native().size() < longest) {
        folder /= std::wstring(40, L'd');
    }
    const fs::path top = L"\\\\?\\" + work(names).native();
    const fs::path form = L"\\\\?\\" + folder.native();
    fs::path next = top;
    for (const fs::path& part : folder.lexically_relative(work(names))) {
        next /= part;
        CreateDirectoryW(next.c_str(), nullptr);
    }
    const HANDLE made = CreateFileW((form / "file").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    const bool found = foundation::core::path::is_regular_file(folder / "file");
    CloseHandle(made);
    for (; next.native().size() > top.native().size(); next = next.parent_path()) {
        RemoveDirectoryW(next.c_str());
    }
    return saying(made == INVALID_HANDLE_VALUE ? "not made" : found ? "found" : "not found");
}

Answer temporaryFolderByVariable(const std::string& /*argument*/, const Names& names)
{
    const fs::path before = foundation::core::path::temp_directory_name();
    setVariable("TMP", names.get("<work>"));
    setVariable("TEMP", "C:\\");
    const fs::path found = foundation::core::path::temp_directory_name();
    setVariable("TMP", utf8(before));
    setVariable("TEMP", utf8(before));
    return saying(utf8(found));
}

Answer linkOf(const std::string& argument, const Names& names)
{
    const fs::path link = work(names) / argument;
    const bool made =
        argument == "junction" ? makeJunction(link, work(names)) : makeSymbolicLink(link, pathOf(names.get("<probe>")));
    const DWORD code = GetLastError();
    if (!made && code == ERROR_PRIVILEGE_NOT_HELD) {
        return unable("this account may not make links");
    }
    const bool isLink = made && foundation::core::path::is_link(link);
    if (argument == "junction") {
        RemoveDirectoryW(link.c_str());
    }
    return saying(!made ? "error " + std::to_string(code) : isLink ? "link" : "no link");
}

Answer programsOfTheStore(const std::string& /*argument*/, const Names& /*names*/)
{
    std::wstring local(32768, L'\0');
    local.resize(GetEnvironmentVariableW(L"LOCALAPPDATA", local.data(), static_cast<DWORD>(local.size())));
    std::string others;
    std::size_t count = 0;
    std::error_code error;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(local) / "Microsoft" / "WindowsApps", error)) {
        if (entry.path().extension() == ".exe") {
            ++count;
            const bool isFile =
                foundation::core::path::is_regular_file(entry.path()) && !foundation::core::path::is_link(entry.path());
            others += isFile ? "" : " " + utf8(entry.path().filename());
        }
    }
    if (count == 0) {
        return unable("there are none");
    }
    return saying(others.empty() ? "all are files" : "others:" + others);
}

// The probe keeps the file open after it has written, until its time is up.
Answer growingFile(const std::string& /*argument*/, const Names& names)
{
    const fs::path file = work(names) / "growing";
    std::string sizes;
    orb::process::detail::RunOptions options;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    options.setTerminationHandler([&] { return !sizes.empty() || std::chrono::steady_clock::now() > end; });
    options.setOutputLogger([&](orb::process::detail::Stream, std::string_view) {
        std::error_code error;
        const std::uintmax_t byLibrary = fs::file_size(file, error);
        sizes = "opened " + sizeByHandle(file) + ", standard library " +
                (error ? "unknown" : std::to_string(byLibrary)) + ", folder " + sizeByFolder(file);
    });
    orb::process::detail::run({names.get("<probe>"), "hold-file", utf8(file), "1048576"}, {}, {}, false, options);
    return saying(sizes);
}

Answer consoleText(const std::string& /*argument*/, const Names& names)
{
    const std::string bytes = inConsolePage(names.get("<letters>")).value_or("");
    try {
        return saying(foundation::core::text::cvt_ustring_utf8(foundation::core::text::cvt_string_ustring(bytes)));
    } catch (const std::system_error& error) {
        return saying("error " + std::to_string(error.code().value()) + ": " + error.what());
    }
}

Answer adapters(const std::string& /*argument*/, const Names& /*names*/)
{
    std::string found;
    for (const auto& each : foundation::core::net::NetworkInterface::list()) {
        if (each.getFriendlyName().find(u"WSL") != std::u16string::npos) {
            found += foundation::core::text::cvt_ustring_utf8(each.getFriendlyName()) + "\n";
        }
    }
    return saying(found);
}

Answer registration(const std::string& /*argument*/, const Names& names)
{
    HKEY all = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, LR"(Software\Microsoft\Windows\CurrentVersion\Lxss)", 0, KEY_READ, &all) !=
        ERROR_SUCCESS) {
        return saying("no distributions");
    }
    std::string found = "not registered";
    std::array<wchar_t, 256> name{};
    for (DWORD i = 0, size = 256;
         RegEnumKeyExW(all, i, name.data(), &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, size = 256) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(all, name.data(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
            continue;
        }
        if (registryText(key, L"DistributionName") == names.get("<name>")) {
            DWORD state = 0;
            DWORD bytes = sizeof state;
            RegGetValueW(key, nullptr, L"State", RRF_RT_REG_DWORD, nullptr, &state, &bytes);
            found = "state " + std::to_string(state) + ", folder " + withoutPrefix(registryText(key, L"BasePath"));
        }
        RegCloseKey(key);
    }
    RegCloseKey(all);
    return saying(found);
}

} // namespace verify
