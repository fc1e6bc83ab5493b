// A folder that its user may not write into. To root nothing is refused, so the test is somebody else meanwhile.
#include "terminal/platform.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <unistd.h>

namespace {

using std::filesystem::perms;

// Somebody who owns nothing, if that is possible.
class Somebody {
public:
    Somebody() { isRoot_ = ::geteuid() == 0 && ::seteuid(nobody) == 0; }
    ~Somebody()
    {
        if (isRoot_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }
    Somebody(const Somebody&) = delete;
    Somebody& operator=(const Somebody&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    bool isRoot_ = false;
};

bool mayWriteWith(perms rights)
{
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(), rights);
    const bool may = [&folder] {
        const Somebody somebody;
        return kelpctl::mayWriteInto(folder.path());
    }();
    // So that it can be removed.
    std::filesystem::permissions(folder.path(), perms::owner_all);
    return may;
}

TEST(FolderAccess, FolderMayBeWrittenToByWhoMayAddFilesToIt)
{
    EXPECT_TRUE(mayWriteWith(perms::all));
    EXPECT_FALSE(mayWriteWith(perms::owner_read | perms::owner_exec | perms::group_read | perms::others_read |
                              perms::group_exec | perms::others_exec));
    EXPECT_FALSE(mayWriteWith(perms::owner_write | perms::group_write | perms::others_write));
    EXPECT_FALSE(mayWriteWith(perms::none));
}

} // namespace
