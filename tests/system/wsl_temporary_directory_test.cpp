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
#include <utility>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

// A file system of the test's own, over a folder that it makes. It must go before the folder can.
class OwnMount {
public:
    OwnMount(std::filesystem::path folder, unsigned long flags, const char* options) : folder_(std::move(folder))
    {
        // In a name space of this process, so that nobody else sees it.
        EXPECT_EQ(unshare(CLONE_NEWNS), 0) << "this test needs root";
        EXPECT_EQ(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
        std::filesystem::create_directory(folder_);
        EXPECT_EQ(mount("tmpfs", folder_.c_str(), "tmpfs", flags, options), 0);
    }
    ~OwnMount() { umount2(folder_.c_str(), MNT_DETACH); }
    OwnMount(const OwnMount&) = delete;
    OwnMount& operator=(const OwnMount&) = delete;

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

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
    const OwnMount mounted(folder.path() / "full", 0, "size=64k");
    const TemporaryDirectory full(mounted.folder());
    const std::string text = importError();
    EXPECT_THAT(text, HasSubstr("Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED"));
    EXPECT_THAT(text, HasSubstr("No space left on device"));
    EXPECT_THAT(wsl.distributions(), IsEmpty());
}

TEST_F(WslTemporaryDirectory, AReadOnlyOneIsLeftForWslToReport)
{
    const OwnMount mounted(folder.path() / "read-only", MS_RDONLY, "");
    const TemporaryDirectory readOnly(mounted.folder());
    EXPECT_THAT(importError(), HasSubstr("Wsl/E_ACCESSDENIED"));
    EXPECT_THAT(wsl.distributions(), IsEmpty());
}

} // namespace
