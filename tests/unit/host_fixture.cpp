#include "host_fixture.h"

#include <fstream>

namespace fake {

std::string TestFolder::entry(const std::string& name) const
{
    const std::u8string folder = path().u8string();
    return std::string(folder.begin(), folder.end()) + "/" + name;
}

std::string TestFolder::makeFile(const std::string& name) const
{
    std::string path = entry(name);
    const std::filesystem::path file(wide(path));
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << "content";
    return path;
}

std::string TestFolder::makeFolder(const std::string& name) const
{
    std::string path = entry(name);
    std::filesystem::create_directories(std::filesystem::path(wide(path)));
    return path;
}

std::u16string wide(const std::string& text)
{
    return std::filesystem::path(std::u8string(text.begin(), text.end())).u16string();
}

HostTest::HostTest()
{
    for (const char* name : {"USE_WSL", "USE_DOCKER_REPOSITORY", "KELP_ADDITIONAL_LOGGING", "AUX_DOCKER_ARGS"}) {
        setVariable(name, std::nullopt);
    }
}

void HostTest::SetUp()
{
    ASSERT_EQ(testing::UnitTest::GetInstance()->test_to_run_count(), 1)
        << "each test needs a process of its own: run them with ctest, or one at a time with --gtest_filter";
}

void HostTest::TearDown()
{
    host().verify();
}

void expectWslLookup()
{
    host().expectRun({"where", "wsl.exe"}, {0, wslPath + "\r\n", ""});
    host().expectRun({wslPath, "-v"}, {0, "", ""});
}

Events wslLookup()
{
    return {ran({"where", "wsl.exe"}), wslDetail("check_possible_executables: wsl_path_candidate = " + wslPath),
            ran({wslPath, "-v"}), wslDetail("getExecutablePath: wsl_path " + wslPath)};
}

Events wslPathUsed()
{
    return {wslDetail("getExecutablePath: wsl_path " + wslPath)};
}

namespace {

Arguments listingArguments(bool onlyRunning)
{
    Arguments arguments = {wslPath, "--list", "-q"};
    if (onlyRunning) {
        arguments.emplace_back("--running");
    }
    return arguments;
}

} // namespace

void expectListing(bool onlyRunning, const RunResult& result)
{
    host().expectRun(listingArguments(onlyRunning), result);
}

Events listing(bool onlyRunning, int status)
{
    Events events = sequence({wslPathUsed(), {wslDetail("getDistros: wslPath = " + wslPath)}});
    if (onlyRunning) {
        events.push_back(wslDetail("getDistros: wslPath onlyRunning = true"));
    }
    events.push_back(ran(listingArguments(onlyRunning)));
    events.push_back(wslDetail("getDistros: status = " + std::to_string(status)));
    return events;
}

void expectDockerLookup(const std::string& path)
{
    host().expectRun({"where", "docker.exe"}, {0, path + "\r\n", ""});
}

Events dockerLookup(const std::string& path)
{
    const std::string converted = "cvt_string_ustring " + path;
    return {ranIn("c:", {"where", "docker.exe"}),
            converted,
            "exists " + path,
            converted,
            "is_link " + path,
            converted,
            "is_regular_file " + path};
}

void expectImages(const std::string& dockerPath, const std::string& output)
{
    expectDockerLookup(dockerPath);
    host().expectRun({dockerPath, "images", "--format", "{{.Repository}}"}, {0, output, ""});
}

Events images(const std::string& dockerPath)
{
    return sequence({dockerLookup(dockerPath), {ran({dockerPath, "images", "--format", "{{.Repository}}"})}});
}

Events tarsDirectoryLookup()
{
    const std::string root = narrow(host().nativeForm);
    const std::string join = "concatenate_pathname " + root;
    return {"get_install_path",
            "make_native_form generic:root|0 1",
            join + "|1 toolbox 1",
            join + "/toolbox|1 shared 1",
            join + "/toolbox/shared|1 kavori 1",
            join + "/toolbox/shared/kavori|1 kelp 1",
            join + "/toolbox/shared/kavori/kelp|1 tar_files 1"};
}

} // namespace fake
