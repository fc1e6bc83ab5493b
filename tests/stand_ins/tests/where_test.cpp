// The stand-in for where.exe; the same tests hold it on both systems.
#include "run_program.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

#ifdef _WIN32
constexpr char separator[] = ";";
#else
constexpr char separator[] = ":";
#endif

} // namespace

class Where : public testing::Test {
protected:
    Where()
    {
        for (const char* name : {"here", "one", "two"}) {
            fs::create_directory(folder.path() / name);
        }
    }

    fs::path place(const std::string& directory, const std::string& name)
    {
        const fs::path file = folder.path() / directory / name;
        writeFile(file, "");
        return file;
    }

    Outcome where(const std::vector<std::string>& names)
    {
        const std::string path = (folder.path() / "one").string() + separator + (folder.path() / "two").string();
        return runProgram({WHERE_PROGRAM, names, {{"PATH", path}}, "", folder.path() / "here"});
    }

    TemporaryFolder folder;
};

TEST_F(Where, PrintsAMatchAlongPathWithCrLf)
{
    const fs::path file = place("two", "tool.exe");
    const Outcome outcome = where({"tool.exe"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, file.string() + "\r\n");
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(Where, PrintsEveryMatchTheCurrentFolderFirst)
{
    const fs::path second = place("one", "tool.exe");
    const fs::path third = place("two", "tool.exe");
    const fs::path first = place("here", "tool.exe");
    EXPECT_EQ(where({"tool.exe"}).output, first.string() + "\r\n" + second.string() + "\r\n" + third.string() + "\r\n");
}

TEST_F(Where, NothingFoundIsSaidOnStandardErrorWithStatus1)
{
    const Outcome outcome = where({"no-such-tool.exe"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "INFO: Could not find files for the given pattern(s).\r\n");
}

TEST_F(Where, FolderIsNoMatch)
{
    fs::create_directory(folder.path() / "one" / "tool.exe");
    EXPECT_EQ(where({"tool.exe"}).status, 1);
}

TEST_F(Where, OneMissingNameAmongOthersGivesStatus1)
{
    const fs::path file = place("one", "tool.exe");
    const Outcome outcome = where({"tool.exe", "other.exe"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, file.string() + "\r\n");
}

TEST_F(Where, NoNameIsAnError)
{
    EXPECT_EQ(where({}).status, 2);
}
