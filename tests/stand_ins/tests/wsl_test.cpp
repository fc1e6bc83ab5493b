#include "wsl_test.h"

#include <cstdlib>

using testing::AllOf;
using testing::Field;
using testing::HasSubstr;

WslTest::WslTest()
{
    environment["WSL_STAND_IN_STATE"] = (folder.path() / "state").string();
    environment["WSL_UTF8"] = "1";
}

WslTest::~WslTest()
{
    environment["WSL_STAND_IN_MODE"] = "";
    wsl({"--shutdown"});
}

Outcome WslTest::wsl(const std::vector<std::string>& arguments, const std::string& input)
{
    return runProgram({WSL_PROGRAM, arguments, environment, input, folder.path()});
}

Outcome WslTest::wslRaw(const std::string& commandLine)
{
    Environment extended = environment;
    extended["WSL_STAND_IN_COMMAND_LINE"] = "\"C:\\Program Files\\WSL\\wsl.exe\" " + commandLine;
    return runProgram({WSL_PROGRAM, {}, extended, "", folder.path()});
}

Outcome WslTest::inHub(const std::vector<std::string>& arguments, const std::string& input)
{
    std::vector<std::string> all = {"-d", "Hub", "--exec"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return wsl(all, input);
}

Outcome WslTest::shellInHub(const std::string& script)
{
    return inHub({"sh", "-c", script});
}

std::filesystem::path WslTest::folderOf(const std::string& name) const
{
    return folder.path() / ("folder-of-" + name);
}

Outcome WslTest::importAs(const std::string& name)
{
    return wsl({"--import", name, folderOf(name).string(), HUB_ROOTFS, "--version", "2"});
}

std::string WslTest::list(const std::vector<std::string>& options)
{
    std::vector<std::string> all = {"--list"};
    all.insert(all.end(), options.begin(), options.end());
    return wsl(all).output;
}

std::filesystem::path WslTest::archive(const std::string& name, const std::string& tarOptions,
                                       const std::vector<std::string>& files) const
{
    const std::filesystem::path tree = folder.path() / ("tree-of-" + name);
    std::filesystem::create_directory(tree);
    for (const std::string& file : files) {
        std::filesystem::create_directories((tree / file).parent_path());
        writeFile(tree / file, std::string(4096, 'x'));
    }
    const std::filesystem::path result = folder.path() / name;
    shell("tar -c " + tarOptions + " -C " + tree.string() + " -f " + result.string() + " .");
    return result;
}

void shell(const std::string& line)
{
    ASSERT_EQ(std::system(line.c_str()), 0) << line;
}

std::string lines(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        result += c == '\n' ? "\r\n" : std::string(1, c);
    }
    return result;
}

std::string utf16(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        result += c;
        result += '\0';
    }
    return result;
}

testing::Matcher<const Outcome&> failsWith(const std::string& text)
{
    return AllOf(Field("status", &Outcome::status, ownFailure), Field("output", &Outcome::output, lines(text)),
                 Field("errors", &Outcome::errors, ""));
}

testing::Matcher<const Outcome&> failsSaying(const std::string& part)
{
    return AllOf(Field("status", &Outcome::status, ownFailure), Field("output", &Outcome::output, HasSubstr(part)),
                 Field("errors", &Outcome::errors, ""));
}

testing::Matcher<const Outcome&> succeedsWith(const testing::Matcher<const std::string&>& output)
{
    return AllOf(Field("status", &Outcome::status, 0), Field("output", &Outcome::output, output),
                 Field("errors", &Outcome::errors, ""));
}
