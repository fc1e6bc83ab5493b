// A temporary directory that cannot take a distribution. Needs mounts of the test's own, so Linux only.
#include "machine.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>

#include <filesystem>
#include <string>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

// A file system that goes away with the test's process.
void mountOwn(const std::filesystem::path& folder, unsigned long flags, const char* options)
{
    ASSERT_EQ(unshare(CLONE_NEWNS), 0) << "this test needs root";
    ASSERT_EQ(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    std::filesystem::create_directory(folder);
    ASSERT_EQ(mount("tmpfs", folder.c_str(), "tmpfs", flags, options), 0);
}

class WslTemporaryDirectory : public testing::Test {
protected:
    std::string importError() const
    {
        tree.install();
        try {
            orb::lvm::importFromTarIfNecessary("", "", false);
        } catch (const foundation::core::except::IMsgIDException& error) {
            EXPECT_EQ(error.message().identifier, "WSL_CANNOT_IMPORT_TAR_FILE");
            return error.userText();
        }
        ADD_FAILURE() << "the import succeeded";
        return {};
    }

    TemporaryFolder folder;
    InstallTree tree;
    Wsl wsl;
};

TEST_F(WslTemporaryDirectory, AFullOneFailsTheImportAndRegistersNothing)
{
    ASSERT_NO_FATAL_FAILURE(mountOwn(folder.path() / "full", 0, "size=64k"));
    const TemporaryDirectory full(folder.path() / "full");
    EXPECT_THAT(importError(), HasSubstr("Wsl/"));
    EXPECT_THAT(wsl.distributions(), IsEmpty());
}

TEST_F(WslTemporaryDirectory, AReadOnlyOneIsLeftForWslToReport)
{
    ASSERT_NO_FATAL_FAILURE(mountOwn(folder.path() / "read-only", MS_RDONLY, ""));
    const TemporaryDirectory readOnly(folder.path() / "read-only");
    EXPECT_THAT(importError(), HasSubstr("Wsl/"));
    EXPECT_THAT(wsl.distributions(), IsEmpty());
}

} // namespace
