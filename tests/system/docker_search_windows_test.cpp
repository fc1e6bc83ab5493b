// A docker.exe whose path the look-up prints in the code page of consoles.
#include "machine.h"

#include "host/process.h"
#include "orb/lvm.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <windows.h>

namespace {

std::string inConsoleCodePage(const std::wstring& text)
{
    std::string bytes(2 * text.size(), '\0');
    bytes.resize(
        static_cast<std::size_t>(WideCharToMultiByte(CP_OEMCP, 0, text.data(), static_cast<int>(text.size()),
                                                     bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

class DockerSearchWindows : public testing::Test {
protected:
    DockerSearchWindows()
    {
        std::filesystem::create_directory(client.parent_path());
        std::filesystem::copy_file(SCRIPTED_PROGRAM, client);
    }

    const EnvironmentVariable backend{"USE_WSL", "0"};
    const TemporaryFolder files;
    const InstallTree tree;
    const ScriptedPrograms programs;
    const std::filesystem::path client = files.path() / L"J\u00FCrgen" / "docker.exe";
    const std::string printed = inConsoleCodePage(client.native());
};

TEST_F(DockerSearchWindows, AClientInAFolderWithOtherLettersIsFoundAndRun)
{
    ASSERT_NE(printed, utf8(client));
    programs.add("where", printed + "\r\nC:\\missing\\docker.exe\r\n");
    EXPECT_EQ(orb::lvm::getContainerExecutablePath(), printed);
    EXPECT_TRUE(orb::lvm::startContainerIfNecessary("", ""));
    EXPECT_TRUE(orb::lvm::stopContainerIfNecessary(""));
}

// kelpctl's manifest makes UTF-8 its code pages; those of the programs that it asks are the machine's.
TEST_F(DockerSearchWindows, AProgramWithCodePagesOfItsOwnFindsAndRunsThatClientToo)
{
    programs.add("where", printed + "\r\n");
    const orb::process::detail::RunResult stopped =
        orb::process::detail::run({KELPCTL_PROGRAM, "--root", utf8(tree.root()), "stop"});
    EXPECT_EQ(stopped.status, 0) << stopped.standardError;
}

} // namespace
