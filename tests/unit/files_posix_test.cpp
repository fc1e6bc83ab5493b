// Paths that cannot be looked at.
#include "host_fixture.h"

#include "docker.h"
#include "wsl.h"

#include <sys/stat.h>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using std::filesystem::filesystem_error;

// No file system takes a name of this length.
const std::string tooLong(300, 'x');

void expectError(const filesystem_error& error, const char* operation, const std::filesystem::path& path,
                 std::errc code)
{
    const std::error_code expected(static_cast<int>(code), std::system_category());
    EXPECT_STREQ(error.what(), filesystem_error(operation, path, expected).what());
    EXPECT_EQ(error.path1(), path);
    EXPECT_EQ(error.code(), code);
}

class FilesPosix : public HostTest {
protected:
    // Makes `name` a link that leads to itself.
    std::string makeLoop(const std::string& name) const
    {
        std::filesystem::create_symlink(name, folder.path() / name);
        return folder.entry(name);
    }

    TestFolder folder;
};

TEST_F(FilesPosix, ADockerCandidateThatCannotBeLookedAtIsAnError)
{
    const std::string loop = makeLoop("docker.exe");
    expectDockerLookup(loop + "\r\n" + folder.makeFile("real/docker.exe"));
    try {
        getDockerExecutablePath();
        ADD_FAILURE() << "no error";
    } catch (const filesystem_error& error) {
        expectError(error, "exists", loop, std::errc::too_many_symbolic_link_levels);
    }
}

TEST_F(FilesPosix, ADockerCandidateWhoseTypeCannotBeToldIsAnError)
{
    const std::string client = folder.makeFile("docker.exe");
    host().isLink = [this](const std::filesystem::path& path, std::error_code&) {
        std::filesystem::remove(path);
        makeLoop("docker.exe");
        return false;
    };
    expectDockerLookup(client);
    try {
        getDockerExecutablePath();
        ADD_FAILURE() << "no error";
    } catch (const filesystem_error& error) {
        expectError(error, "status", client, std::errc::too_many_symbolic_link_levels);
    }
}

// A path in the host's own tree is taken without a look, when there is no other.
TEST_F(FilesPosix, AClientThatCannotBeLookedAtIsAnErrorOfProvisioning)
{
    const std::string loop = makeLoop("bin\\win64");
    host().expectRun({"where", "docker.exe"}, {0, loop + "\r\n", ""});
    try {
        dockerImportFromTarIfNecessary("", "", false);
        ADD_FAILURE() << "no error";
    } catch (const filesystem_error& error) {
        expectError(error, "exists", loop, std::errc::too_many_symbolic_link_levels);
    }
}

TEST_F(FilesPosix, AnArchiveThatCannotBeLookedAtIsAnError)
{
    const std::string client = folder.makeFile("docker.exe");
    expectDockerLookup(client);
    expectImages(client, "");
    try {
        dockerImportFromTarIfNecessary(tooLong, "", false);
        ADD_FAILURE() << "no error";
    } catch (const filesystem_error& error) {
        expectError(error, "exists", tooLong, std::errc::filename_too_long);
    }
}

TEST_F(FilesPosix, ADistroFolderHasTheRightsThatTheProcessGives)
{
    using std::filesystem::perms;
    const mode_t before = umask(0077);
    host().temporaryName = wide(folder.entry("new/folder"));
    expectWslLookup();
    expectListing(false, {});
    host().expectRun({wslPath, "--import", "mine", folder.entry("new/folder"), "archive", "--version", "2"});
    wslImportFromTarIfNecessary("archive", "mine");
    umask(before);
    EXPECT_EQ(std::filesystem::status(folder.path() / "new").permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(folder.path() / "new/folder").permissions(), perms::owner_all);
}

TEST_F(FilesPosix, ADistroFolderThatCannotBeLookedAtIsAnErrorBeforeTheImport)
{
    host().temporaryName = std::u16string(tooLong.begin(), tooLong.end());
    expectWslLookup();
    expectListing(false, {});
    try {
        wslImportFromTarIfNecessary("archive", "");
        ADD_FAILURE() << "no error";
    } catch (const filesystem_error& error) {
        expectError(error, "exists", tooLong, std::errc::filename_too_long);
    }
}

} // namespace
