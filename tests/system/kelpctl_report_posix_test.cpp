// The report for support, opened by another program.
#include "machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using orb::process::detail::run;
using testing::HasSubstr;

TEST(SupportReportAsAZip, IsWholeAndListsWhatItHolds)
{
    const InstallTree tree;
    const Wsl wsl;
    const TemporaryFolder folder;
    const std::string file = utf8(folder.path() / "report.zip");
    ASSERT_EQ(run({KELPCTL_PROGRAM, "--root", utf8(tree.root()), "report", file}).status, 0);
    const auto tested = run({"/usr/bin/python3", "-m", "zipfile", "-t", file});
    EXPECT_EQ(tested.standardOutput, "Done testing\n") << tested.standardError;
    const auto listed = run({"/usr/bin/python3", "-m", "zipfile", "-l", file});
    for (const char* name : {"doctor.json", "contents.txt", "programs/wsl-list.stdout"}) {
        EXPECT_THAT(listed.standardOutput, HasSubstr(name));
    }
}

} // namespace
