// The installation root, as the host-services library finds it from its own place.
#include "host/install.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <dlfcn.h>

namespace {

using foundation::core::path::Pathname;

constexpr char function[] = "_ZN10foundation4core4path16get_install_pathEv";

std::filesystem::path libraryInUse()
{
    Dl_info found{};
    return ::dladdr(::dlsym(RTLD_DEFAULT, function), &found) != 0 ? found.dli_fname : "";
}

// The root that a copy of the library finds in this folder of a tree, as a path in the tree.
std::string rootFrom(const std::string& inner)
{
    const TemporaryFolder tree;
    const std::filesystem::path folder = tree.path() / inner;
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(libraryInUse(), folder / "libkorvane_host.so");
    void* const copy = ::dlopen((folder / "libkorvane_host.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (copy == nullptr) {
        return ::dlerror();
    }
    const auto installPath = reinterpret_cast<Pathname (*)()>(::dlsym(copy, function));
    const std::filesystem::path root = installPath().text;
    return root.lexically_relative(tree.path()).string();
}

TEST(InstallPathPosix, IsTheTreeAroundTheInnermostOfItsFolders)
{
    const EnvironmentVariable unset("KORVANE_ROOT");
    EXPECT_EQ(rootFrom("lib"), ".");
    EXPECT_EQ(rootFrom("bin"), ".");
    EXPECT_EQ(rootFrom("bin/win64"), ".");
    EXPECT_EQ(rootFrom("opt/lib/product/lib"), "opt/lib/product");
    EXPECT_EQ(rootFrom("lib/lib"), "lib");
    EXPECT_EQ(rootFrom("bin/lib"), "bin");
    EXPECT_EQ(rootFrom("bin/win64/lib"), "bin/win64");
    EXPECT_EQ(rootFrom("lib/bin/win64"), "lib");
}

TEST(InstallPathPosix, IsTheLibrarysFolderOutsideATree)
{
    const EnvironmentVariable unset("KORVANE_ROOT");
    for (const char* inner : {"xlib", "lib/x", "Lib", "lib64", "bin/win32", "x/bin/win64/y"}) {
        EXPECT_EQ(rootFrom(inner), inner);
    }
}

} // namespace
