#include "machine.h"

#include <windows.h>

#include <fstream>
#include <memory>
#include <stdexcept>

const char* const temporaryDirectoryVariable = "TMP";
const char* const programSuffix = ".exe";

namespace {

struct FreeOnHeap {
    void operator()(char* text) const noexcept { HeapFree(GetProcessHeap(), 0, text); }
};

} // namespace

std::string unixPath(const std::filesystem::path& path)
{
    // Wine's own answer; the stand-ins are Linux programs, so these tests have no meaning without it.
    using Convert = char* (*)(const wchar_t*);
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
    if (found == nullptr) {
        throw std::runtime_error("the system tests need Wine");
    }
    const auto convert = reinterpret_cast<Convert>(reinterpret_cast<void*>(found));
    const std::filesystem::path folder = path.parent_path();
    const std::unique_ptr<char, FreeOnHeap> text(convert(folder.c_str()));
    if (text == nullptr) {
        throw std::runtime_error("no Linux path for " + path.string());
    }
    // The last component need not exist yet.
    return std::string(text.get()) + "/" + path.filename().string();
}

std::vector<std::unique_ptr<EnvironmentVariable>> bridgeVariables()
{
    const std::string folder = unixPath(standInFolder());
    std::vector<std::unique_ptr<EnvironmentVariable>> variables;
    variables.push_back(std::make_unique<EnvironmentVariable>("WINE_BRIDGE_WSL", folder + "/linux/wsl"));
    variables.push_back(std::make_unique<EnvironmentVariable>("WINE_BRIDGE_DOCKER", "/usr/bin/docker"));
    return variables;
}

LostDisk::LostDisk(const std::string& distribution, const std::filesystem::path& temporaryFolder)
{
    for (const auto& entry : std::filesystem::directory_iterator(temporaryFolder)) {
        std::filesystem::remove(entry.path() / "ext4.vhdx");
    }
    registered_.emplace(Registered::Entry{distribution, temporaryFolder / "gone"});
}

WrittenDown::WrittenDown(const std::string& distribution)
{
    std::ofstream(folder_.path() / "ext4.vhdx");
    registered_.emplace(Registered::Entry{distribution, folder_.path()});
}
