// Finding docker.exe.
#include "host_fixture.h"

#include "docker.h"

#include <stdexcept>

namespace {

using namespace fake;
using namespace orb::lvm::detail;

const Arguments where = {"where", "docker.exe"};

class DockerDiscovery : public HostTest {
protected:
    static void expectWhere(const std::string& output) { host().expectRun(where, {0, output, "ignored"}); }

    // The events of a candidate that exists and is no link.
    static Events looked(const std::string& path)
    {
        const std::string converted = "cvt_string_ustring " + path;
        return {converted, "exists " + path, converted, "is_link " + path, converted, "is_regular_file " + path};
    }

    TestFolder folder;
};

TEST_F(DockerDiscovery, AFileIsTakenWithoutItsLineEnd)
{
    const std::string client = folder.makeFile("a b/docker.exe");
    expectWhere(client + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), client);
    expectEvents(sequence({{ranIn("c:", where)}, looked(client)}));
}

TEST_F(DockerDiscovery, TheFirstFileWins)
{
    const std::string first = folder.makeFile("1/docker.exe");
    const std::string second = folder.makeFile("2/docker.exe");
    expectWhere("\r\n  " + first + " \r\n" + second + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), first);
    expectEvents(sequence({{ranIn("c:", where)}, looked(first)}));
}

TEST_F(DockerDiscovery, TheHostsOwnTreeIsPassedOver)
{
    const std::string own = folder.makeFile("bin\\win64/docker.exe");
    const std::string deeper = folder.makeFile("xbin\\win64x/docker.exe");
    const std::string client = folder.makeFile("docker.exe");
    expectWhere(own + "\r\n" + deeper + "\r\n" + client + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), client);
    expectEvents(sequence({{ranIn("c:", where)}, looked(client)}));
}

TEST_F(DockerDiscovery, OtherFoldersThanTheHostsAreAccepted)
{
    for (const char* name :
         {"BIN\\win64", "bin\\Win64", "bin/win64", "bin\\win32", "bin\\win6", "in\\win64", "win64"}) {
        const std::string client = folder.makeFile(std::string("other ") + name + "/docker.exe");
        expectWhere(client + "\n" + folder.makeFile("docker.exe"));
        EXPECT_EQ(getDockerExecutablePath(), client);
    }
}

TEST_F(DockerDiscovery, ATextThatIsTheFolderAloneIsPassedOver)
{
    expectWhere("bin\\win64");
    EXPECT_EQ(getDockerExecutablePath(), "bin\\win64");
    expectEvents({ranIn("c:", where)});
}

TEST_F(DockerDiscovery, AMissingFileIsPassedOver)
{
    const std::string missing = folder.entry("missing/docker.exe");
    const std::string client = folder.makeFile("docker.exe");
    expectWhere(missing + "\r\n" + client + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), client);
    expectEvents(
        sequence({{ranIn("c:", where), "cvt_string_ustring " + missing, "exists " + missing}, looked(client)}));
}

TEST_F(DockerDiscovery, ALinkIsPassedOver)
{
    const std::string link = folder.makeFile("link/docker.exe");
    const std::string client = folder.makeFile("docker.exe");
    host().isLink = [&](const std::filesystem::path& path, std::error_code&) { return path == wide(link); };
    expectWhere(link + "\r\n" + client + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), client);
    const std::string converted = "cvt_string_ustring " + link;
    expectEvents(
        sequence({{ranIn("c:", where), converted, "exists " + link, converted, "is_link " + link}, looked(client)}));
}

TEST_F(DockerDiscovery, AFolderIsPassedOver)
{
    const std::string directory = folder.makeFolder("1/docker.exe");
    const std::string client = folder.makeFile("2/docker.exe");
    expectWhere(directory + "\r\n" + client + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), client);
    expectEvents(sequence({{ranIn("c:", where)}, looked(directory), looked(client)}));
}

TEST_F(DockerDiscovery, AnOnlyLinkIsTakenAllTheSame)
{
    const std::string link = folder.makeFile("docker.exe");
    host().isLink = [](const std::filesystem::path&, std::error_code&) { return true; };
    expectWhere(link + "\r\n");
    EXPECT_EQ(getDockerExecutablePath(), link);
}

TEST_F(DockerDiscovery, WithoutAFileTheWholeTrimmedOutputIsTaken)
{
    const std::string directory = folder.makeFolder("docker.exe");
    expectWhere(" \r\n" + directory + " \r\n\r\n missing\\docker.exe\r\n \r\n");
    EXPECT_EQ(getDockerExecutablePath(), directory + " \r\n\r\n missing\\docker.exe");
}

TEST_F(DockerDiscovery, EmptyOutputGivesAnEmptyPath)
{
    expectWhere(" \r\n");
    EXPECT_EQ(getDockerExecutablePath(), "");
    expectEvents({ranIn("c:", where)});
}

TEST_F(DockerDiscovery, AFailingLookUpGivesAnEmptyPath)
{
    const std::string client = folder.makeFile("docker.exe");
    for (const int status : {1, -1}) {
        host().expectRun(where, {status, client + "\r\n", "INFO: Could not find files"});
        EXPECT_EQ(getDockerExecutablePath(), "");
        expectEvents({ranIn("c:", where)});
    }
}

TEST_F(DockerDiscovery, EachCallLooksAgain)
{
    const std::string first = folder.makeFile("1/docker.exe");
    const std::string second = folder.makeFile("2/docker.exe");
    expectWhere(first);
    expectWhere(second);
    EXPECT_EQ(getDockerExecutablePath(), first);
    EXPECT_EQ(getDockerExecutablePath(), second);
}

TEST_F(DockerDiscovery, AnIllFormedPathIsASystemError)
{
    expectWhere("bad \xFF\r\n" + folder.makeFile("docker.exe"));
    EXPECT_THROW(getDockerExecutablePath(), std::system_error);
}

TEST_F(DockerDiscovery, ALinkThatCannotBeToldIsAnError)
{
    const std::string client = folder.makeFile("docker.exe");
    host().isLink = [](const std::filesystem::path&, std::error_code& error) {
        error = std::make_error_code(std::errc::permission_denied);
        return false;
    };
    expectWhere(client + "\r\n");
    try {
        getDockerExecutablePath();
        ADD_FAILURE() << "no error";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find("symlink_status"), std::string::npos);
        EXPECT_EQ(error.path1(), wide(client));
    }
}

TEST_F(DockerDiscovery, AnExceptionOfTheRunnerPassesThrough)
{
    host().expectRun(where, []() -> RunResult { throw std::runtime_error("no where"); });
    EXPECT_THROW(getDockerExecutablePath(), std::runtime_error);
}

} // namespace
