#include "files_system.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <utility>

#include <windows.h>

namespace {

using UnixName = char*(CDECL*)(const wchar_t*);

// What Linux calls a path under Wine; null on Windows.
UnixName unixNameFunction()
{
    const auto function = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
    return reinterpret_cast<UnixName>(reinterpret_cast<void*>(function));
}

std::string unixName(const std::filesystem::path& path)
{
    char* const name = unixNameFunction()(path.c_str());
    const std::string copy = name;
    HeapFree(GetProcessHeap(), 0, name);
    return copy;
}

bool underWine()
{
    return unixNameFunction() != nullptr;
}

// Has a command of Linux done, which takes the path as its last argument. Wine does not wait for the programs of Linux
// that it starts.
void doOutsideWine(const std::string& command, const std::filesystem::path& path)
{
    const std::filesystem::path script = path.native() + L".sh";
    const std::filesystem::path done = path.native() + L".done";
    std::ofstream(script, std::ios::binary)
        << command << " '" << unixName(path) << "' && : > '" << unixName(done) << "'\n";
    const std::string name = unixName(script);
    std::wstring line = L"sh \"" + std::wstring(name.begin(), name.end()) + L'"';
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    CreateProcessW(LR"(Z:\bin\sh)", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
    for (int turn = 0; turn < 1000 && !std::filesystem::exists(done); ++turn) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    EXPECT_TRUE(std::filesystem::remove(done)) << command;
    std::filesystem::remove(script);
}

} // namespace

// Wine claims to make links and makes none, and does not see those that lead nowhere.
Link::Link(const std::string& text, std::filesystem::path path) : path_(std::move(path))
{
    if (underWine()) {
        doOutsideWine("ln -s '" + text + "'", path_);
    } else {
        const std::filesystem::path target = text;
        EXPECT_NE(CreateSymbolicLinkW(path_.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE),
                  FALSE);
    }
}

Link::~Link()
{
    if (underWine()) {
        doOutsideWine("rm", path_);
    } else {
        DeleteFileW(path_.c_str());
    }
}

const char* const folderGiven = "D:\\gr\xc3\xbc\xc3\x9f"
                                "e\\/";
const std::u16string folderKept = u"D:\\gr\u00fc\u00dfe";
const std::u16string rootFolder = u"D:\\";

void makeFolders(const std::filesystem::path& folder)
{
    const std::wstring all = LR"(\\?\)" + std::filesystem::path(folder).make_preferred().native();
    for (std::size_t end = all.find(L'\\', 7); end != std::wstring::npos; end = all.find(L'\\', end + 1)) {
        CreateDirectoryW(all.substr(0, end).c_str(), nullptr);
    }
    CreateDirectoryW(all.c_str(), nullptr);
}
