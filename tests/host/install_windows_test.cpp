// The installation root, as the host-services library finds it from its own place.
#include "host/install.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <windows.h>

namespace {

using foundation::core::path::Pathname;

constexpr wchar_t library[] = L"libkorvane_host.dll";

std::filesystem::path libraryInUse()
{
    std::wstring name(MAX_PATH, L'\0');
    name.resize(GetModuleFileNameW(GetModuleHandleW(library), name.data(), static_cast<DWORD>(name.size())));
    return name;
}

// The root that a copy of the library finds which is loaded from this folder.
std::u16string rootFrom(const std::filesystem::path& folder)
{
    const HMODULE copy = LoadLibraryW((folder / library).make_preferred().c_str());
    if (copy == nullptr) {
        return u"cannot be loaded";
    }
    const auto function = GetProcAddress(copy, "_ZN10foundation4core4path16get_install_pathEv");
    const auto installPath = reinterpret_cast<Pathname (*)()>(reinterpret_cast<void*>(function));
    std::u16string root = installPath().text;
    FreeLibrary(copy);
    return root;
}

TEST(InstallPathWindows, IsFoundHoweverTheTreesFoldersAreWritten)
{
    const EnvironmentVariable unset("KORVANE_ROOT");
    for (const char* inner : {"bin/win64", "Bin/Win64", "BIN", "Lib"}) {
        const TemporaryFolder tree;
        std::filesystem::create_directories(tree.path() / inner);
        std::filesystem::copy_file(libraryInUse(), tree.path() / inner / library);
        EXPECT_EQ(rootFrom(tree.path() / inner), std::filesystem::path(tree.path()).generic_u16string()) << inner;
    }
}

TEST(InstallPathWindows, IsTheLibrarysFolderOutsideATree)
{
    const EnvironmentVariable unset("KORVANE_ROOT");
    const TemporaryFolder tree;
    std::filesystem::create_directories(tree.path() / "xbin");
    std::filesystem::copy_file(libraryInUse(), tree.path() / "xbin" / library);
    EXPECT_EQ(rootFrom(tree.path() / "xbin"), (tree.path() / "xbin").generic_u16string());
}

} // namespace
