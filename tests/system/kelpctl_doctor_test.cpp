// kelpctl doctor as a whole, on computers in different states.
#include "docker_machine.h"
#include "golden.h"
#include "machine.h"
#include "programs.h"
#include "scan.h"
#include "set_policies.h"

#include "orb/lvm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace json = boost::json;
using orb::process::detail::RunResult;
using testing::HasSubstr;

constexpr char release[] = "r2026b";
constexpr char name[] = "kelp_hub_r2026b";

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
    return text;
}

std::string withForwardSlashes(std::string text)
{
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

// Every file below the folder, with its content; a folder has none.
std::map<std::string, std::string> contentOf(const std::filesystem::path& folder)
{
    std::map<std::string, std::string> content;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string text;
        if (entry.is_regular_file()) {
            std::ifstream stream(entry.path(), std::ios::binary);
            text.assign(std::istreambuf_iterator<char>(stream), {});
        }
        content[utf8(entry.path())] = text;
    }
    return content;
}

// What varies from one machine to the next.
void clientVersion(Scan& scan)
{
    scan.literal("client version").atLeastOne(" ").mark().one(Scan::digits).anyBut("\n");
}

void engineVersion(Scan& scan)
{
    scan.literal("engine").atLeastOne(" ").literal("version ").mark().atLeastOneBut(" \n");
}

void fileSize(Scan& scan)
{
    scan.atLeastOne("0123456789.").literal(" ").one("KMGT").literal("iB (").atLeastOne(Scan::digits).literal(" bytes)");
}

void imageSize(Scan& scan)
{
    scan.literal("tag ").atLeastOneBut(",\n").literal(", ").mark();
    scan.atLeastOne("0123456789.").atMostOne("kMG").literal("B");
}

void placeAndSizeOfDisk(Scan& scan)
{
    scan.literal("\n           disk").atLeastOne(" ").mark().anyBut("\n");
}

void account(Scan& scan)
{
    scan.literal("\n           account").atLeastOne(" ").mark().anyBut("\n");
}

void reasonOfASystem(Scan& scan)
{
    scan.literal("cannot start '").anyBut("'").literal("': ").mark().anyBut("\n");
}

// A computer with these programs and nothing else, an install tree of its own and an empty temporary folder.
class Computer {
public:
    explicit Computer(const std::vector<std::string>& names) : programs(names) {}

    RunResult doctor(std::vector<std::string> arguments = {}) const
    {
        arguments.insert(arguments.begin(), {KELPCTL_PROGRAM, "doctor"});
        return orb::process::detail::run(arguments, {{"PATH", utf8(programs.folder())},
                                                     {"KORVANE_ROOT", utf8(tree.root())},
                                                     {"KORVANE_RELEASE", release},
                                                     {"USE_DOCKER_REPOSITORY", ""},
                                                     {"DOCKER_CONFIG", utf8(tree.root())},
                                                     {"HOME", utf8(tree.root())},
                                                     {"USERPROFILE", utf8(tree.root())},
                                                     {"LANG", "C"},
                                                     {"LC_ALL", "C"}});
    }

    json::value doctorObject(std::vector<std::string> arguments = {}) const
    {
        arguments.emplace_back("--json");
        return json::parse(doctor(std::move(arguments)).standardOutput).at("result");
    }

    void expectGolden(const std::string& state, const std::vector<std::string>& arguments = {}) const
    {
        const RunResult result = doctor(arguments);
        ::expectGolden(std::filesystem::path(GOLDEN_FOLDER) / ("doctor-" + state + ".txt"),
                       shown(result.standardOutput) + "\n--- standard error\n" + shown(result.standardError) +
                           "\n--- status " + std::to_string(result.status) + "\n");
    }

    InstallTree tree{release};
    Programs programs;
    TemporaryDirectory temporary;

private:
    // What varies, in braces.
    std::string shown(std::string text) const
    {
        text = withForwardSlashes(replaced(std::move(text), "\r", ""));
        const std::vector<std::pair<std::filesystem::path, std::string>> folders = {
            {programs.folder(), "{PROGRAMS}"}, {tree.root(), "{ROOT}"}, {temporary.path(), "{TEMP}"}};
        for (const auto& [folder, token] : folders) {
            text = replaced(text, withForwardSlashes(utf8(folder)), token);
        }
        text = replaced(text, DOCKER_ENGINE, "{ENGINE}");
        text = replacedEach(text, clientVersion, "{VERSION}");
        text = replacedEach(text, engineVersion, "{VERSION}");
        text = replacedEach(text, account, "{ACCOUNT}");
        text = replacedEach(text, placeAndSizeOfDisk, "{DISK}");
        text = replacedEach(text, fileSize, "{SIZE}");
        text = replacedEach(text, imageSize, "{SIZE}");
        text = replaced(text, "status 255 (0x000000FF)", "status {WSL FAILURE}");
        text = replaced(text, "status -1 (0xFFFFFFFF)", "status {WSL FAILURE}");
        text = replacedEach(text, reasonOfASystem, "{REASON}");
        return text;
    }

    EnvironmentVariable useWsl_{"USE_WSL"};
};

class DoctorTable : public testing::Test {};

TEST_F(DoctorTable, NothingInstalled)
{
    const Computer computer({"where"});
    computer.expectGolden("nothing-installed");
}

// On Linux the place where Windows keeps its own wsl.exe is a name on the search path. Under Wine that place is empty, as
// other tests want it.
TEST_F(DoctorTable, WslOfOldWindowsOnly)
{
    const Wsl wsl;
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "inbox");
    const Computer computer({"where", "wsl"});
    computer.tree.install();
    const bool windows = *programSuffix != '\0';
    if (!windows) {
        std::filesystem::copy_file(standInFolder() / "wsl.exe",
                                   computer.programs.folder() / "C:\\Windows\\System32\\wsl.exe");
    }
    computer.expectGolden(windows ? "wsl-inbox-windows" : "wsl-inbox");
}

TEST_F(DoctorTable, WslWithoutDistributions)
{
    const Wsl wsl;
    const Computer computer({"where", "wsl"});
    computer.tree.install();
    computer.expectGolden("wsl-without-distributions");
}

TEST_F(DoctorTable, WslStopped)
{
    const Wsl wsl;
    wsl.import("other");
    wsl.import(name);
    const WrittenDown writtenDown(name);
    const Computer computer({"where", "wsl"});
    computer.expectGolden("wsl-stopped");
}

TEST_F(DoctorTable, WslRunning)
{
    const EnvironmentVariable idle("WSL_STAND_IN_IDLE_MS", "-1");
    const Wsl wsl;
    wsl.import(name);
    wsl.run({"-d", name, "--exec", "true"});
    const WrittenDown writtenDown(name);
    const Computer computer({"where", "wsl"});
    computer.tree.install();
    computer.expectGolden("wsl-running");
}

TEST_F(DoctorTable, HangingTool)
{
    const Wsl wsl;
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "hang");
    const Computer computer({"where", "wsl"});
    computer.tree.install();
    computer.expectGolden("hanging-tool", {"--time-limit", "1"});
}

class DoctorTableOnDocker : public testing::Test {
protected:
    void installArchive() const
    {
        std::filesystem::copy_file(DockerEngine::archive("kelp_hub_docker.tar.gz"),
                                   computer.tree.archiveFolder() / "kelp_hub_docker.tar.gz");
    }

    void load() const
    {
        const std::string archive = utf8(DockerEngine::archive("kelp_hub_docker.tar.gz"));
        EXPECT_EQ(docker.run({"load", "-i", archive}).status, 0);
    }

    Computer computer{{"where", "docker"}};
    DockerEngine docker;
};

TEST_F(DoctorTableOnDocker, DockerWithoutEngine)
{
    const EnvironmentVariable host("DOCKER_HOST", "unix:///nowhere/docker.sock");
    installArchive();
    computer.expectGolden("docker-without-engine");
}

TEST_F(DoctorTableOnDocker, EngineWithoutImage)
{
    computer.expectGolden("engine-without-image");
}

TEST_F(DoctorTableOnDocker, ImageWithoutContainer)
{
    load();
    computer.expectGolden("image-without-container");
}

TEST_F(DoctorTableOnDocker, AllWell)
{
    load();
    installArchive();
    const RunResult started = docker.run({"run", "-di", "--network=host", "--name=kelp_hub", name});
    ASSERT_EQ(started.status, 0) << started.standardError;
    computer.expectGolden("all-well");
}

class Doctor : public testing::Test {
protected:
    // How long the step takes.
    template <class Step>
    static std::chrono::milliseconds timeOf(const Step& step)
    {
        const auto start = std::chrono::steady_clock::now();
        step();
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    }
};

constexpr std::chrono::seconds ownTime(OWN_SECONDS);

TEST_F(Doctor, NeedsNoMoreThanItsOwnTimeBeyondTheLimitOfAToolThatHangs)
{
    const Wsl wsl;
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "hang");
    const Computer computer({"where", "wsl"});
    RunResult result;
    const auto time = timeOf([&] { result = computer.doctor({"--time-limit", "1"}); });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.standardOutput, HasSubstr("it did not answer \"-v\" within 1 s"));
    EXPECT_GE(time, std::chrono::seconds(1));
    EXPECT_LT(time, std::chrono::seconds(1) + ownTime);
}

TEST_F(Doctor, AsksAWslThatHangsNothingElse)
{
    const Wsl wsl;
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "hang@list");
    const Computer computer({"where", "wsl"});
    json::value result;
    const auto time = timeOf([&] { result = computer.doctorObject({"--time-limit", "1"}); });
    EXPECT_EQ(result.at("wsl").at("listing").at("ending"), "timedOut");
    EXPECT_EQ(result.at("wsl").at("distributions"), nullptr);
    EXPECT_EQ(result.at("findings").at(0).at("identifier"), "TOOL_HANGS");
    EXPECT_LT(time, std::chrono::seconds(1) + ownTime);
}

// The stand-in for wsl.exe in the place of the client.
TEST_F(Doctor, AsksAClientThatHangsNothingElse)
{
    const Wsl wsl;
    const bool windows = *programSuffix != '\0';
    const EnvironmentVariable bridge("WINE_BRIDGE_DOCKER", unixPath(standInFolder()) + "/linux/wsl");
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "hang");
    const Computer computer(windows ? std::vector<std::string>{"where", "docker"} : std::vector<std::string>{"where"});
    if (!windows) {
        std::filesystem::copy_file(standInFolder() / "wsl.exe", computer.programs.folder() / "docker.exe");
    }
    json::value result;
    const auto time = timeOf([&] { result = computer.doctorObject({"--docker", "--time-limit", "1"}); });
    EXPECT_EQ(result.at("docker").at("engine").at("reply").at("ending"), "timedOut");
    EXPECT_EQ(result.at("docker").at("images"), nullptr);
    EXPECT_EQ(result.at("findings").at(0).at("identifier"), "TOOL_HANGS");
    EXPECT_LT(time, std::chrono::seconds(1) + ownTime);
}

TEST_F(Doctor, NeedsNoMoreThanItsOwnTimeForAnyAmountOfOutput)
{
    const Wsl wsl;
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "flood");
    const Computer computer({"where", "wsl"});
    const auto toolTime = [] { return timeOf([] { orb::process::detail::run({"wsl.exe", "-v"}); }); };
    RunResult result;
    // The tool is asked three times. Others use the machine too, now more and now less.
    const auto ownTimeOfOneRun = [&] {
        const auto before = toolTime();
        const auto time = timeOf([&] { result = computer.doctor(); });
        return time - 3 * std::max(before, toolTime());
    };
    EXPECT_LT(std::min({ownTimeOfOneRun(), ownTimeOfOneRun(), ownTimeOfOneRun()}), ownTime);
    EXPECT_LT(result.standardOutput.size(), 10'000U);
}

TEST_F(Doctor, SaysThatADiskIsGoneWhereItWasAndWhatToDo)
{
    // Goes when the distribution in it is gone.
    const TemporaryFolder folder;
    const Wsl wsl;
    const Computer computer({"where", "wsl"});
    ASSERT_EQ(wsl.run({"--import", name, utf8(folder.path() / "hub"), utf8(hubArchive()), "--version", "2"}).status, 0);
    const LostDisk lost(name, folder.path());
    const RunResult told = computer.doctor();
    EXPECT_EQ(told.status, 1);
    EXPECT_THAT(told.standardOutput, HasSubstr("ext4.vhdx: gone"));
    EXPECT_THAT(told.standardOutput, HasSubstr("is registered, but its disk is gone, as when"));
    EXPECT_THAT(told.standardOutput, HasSubstr(std::string("remove ") + name + "\", "));
    const json::value object = computer.doctorObject();
    EXPECT_EQ(object.at("verdict"), "blocked");
    EXPECT_EQ(object.at("wsl").at("disk").at("state"), "gone");
    EXPECT_EQ(object.at("wsl").at("disk").at("size"), nullptr);
    EXPECT_EQ(object.at("findings").at(0).at("identifier"), "DISK_GONE");
    EXPECT_EQ(object.at("findings").at(0).at("subject"), object.at("wsl").at("disk").at("path"));
}

TEST_F(Doctor, SaysWhatThePoliciesAndTheUserHaveSet)
{
    const Wsl wsl;
    const Computer computer({"where", "wsl"});
    computer.tree.install();
    const SetPolicies policies({{"AllowWSL", 0}});
    std::ofstream(computer.tree.root() / ".wslconfig")
        << "[wsl2]\r\nkernel=/no/such/kernel\r\nnetworkingMode=mirrored\r\n";
    const RunResult told = computer.doctor();
    EXPECT_EQ(told.status, 1);
    EXPECT_THAT(told.standardOutput, HasSubstr("AllowWSL = 0"));
    EXPECT_THAT(told.standardOutput, HasSubstr("A policy of this computer keeps WSL from being used."));
    EXPECT_THAT(told.standardOutput, HasSubstr("The kernel that .wslconfig names does not exist: /no/such/kernel"));
    EXPECT_THAT(told.standardOutput, HasSubstr("With networkingMode=mirrored in .wslconfig"));
    const json::value object = computer.doctorObject();
    EXPECT_EQ(object.at("wsl").at("config").at("kernelExists"), false);
    EXPECT_TRUE(object.at("account").is_object());
}

TEST_F(Doctor, ChangesNothingOnWsl)
{
    const Wsl wsl;
    wsl.import("other");
    const Computer computer({"where", "wsl"});
    computer.tree.install();
    const auto distributions = wsl.run({"--list", "--verbose"}).standardOutput;
    const auto tree = contentOf(computer.tree.root());
    EXPECT_EQ(computer.doctor().status, 0);
    EXPECT_EQ(wsl.run({"--list", "--verbose"}).standardOutput, distributions);
    EXPECT_EQ(contentOf(computer.tree.root()), tree);
    EXPECT_TRUE(std::filesystem::is_empty(computer.temporary.path()));
}

TEST_F(Doctor, AsksWslNothingThatWouldStartADistribution)
{
    const Wsl wsl;
    wsl.import(name);
    const Computer computer({"where", "wsl"});
    wsl.takeCalls();
    EXPECT_EQ(computer.doctor().status, 0);
    EXPECT_THAT(wsl.takeCalls(), testing::ElementsAre("where wsl.exe", "wsl -v", "wsl -l -q",
                                                      "wsl --list --all --verbose", "where docker.exe"));
}

class DoctorOnDocker : public DoctorTableOnDocker {
protected:
    std::vector<std::string> contents() const
    {
        std::vector<std::string> all = docker.images();
        for (const std::string& container : docker.containers()) {
            all.push_back(container);
        }
        return all;
    }
};

TEST_F(DoctorOnDocker, ChangesNothing)
{
    load();
    installArchive();
    EXPECT_EQ(docker.run({"create", "--name=other", name}).status, 0);
    const auto before = contents();
    const auto tree = contentOf(computer.tree.root());
    EXPECT_EQ(computer.doctor().status, 0);
    EXPECT_EQ(contents(), before);
    EXPECT_EQ(contentOf(computer.tree.root()), tree);
    EXPECT_TRUE(std::filesystem::is_empty(computer.temporary.path()));
}

TEST_F(DoctorOnDocker, SeesAStoppedContainer)
{
    load();
    EXPECT_EQ(docker.run({"create", "--name=kelp_hub", name}).status, 0);
    const json::value result = computer.doctorObject();
    EXPECT_EQ(result.at("verdict"), "exists");
    EXPECT_EQ(result.at("findings").at(0).at("identifier"), "CONTAINER_NOT_RUNNING");
}

TEST_F(DoctorOnDocker, SaysBeforeSetupDoesWhatWouldKeepItFromWorking)
{
    std::ofstream(computer.tree.archiveFolder() / "kelp_hub_docker.tar.gz") << "<html>not found</html>\n";
    const RunResult result = computer.doctor();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.standardOutput, HasSubstr("kelp_hub_docker.tar.gz is no archive that "));
    EXPECT_THROW(
        orb::lvm::importFromTarIfNecessary(utf8(computer.tree.archiveFolder() / "kelp_hub_docker.tar.gz"), "", false),
        std::exception);
}

// The doctor's account of the search is held to the library's own choice.
class DoctorsChoice : public testing::Test {
protected:
    std::string client(const std::string& folder) const
    {
        const std::filesystem::path path = files.path() / folder / "docker.exe";
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(SCRIPTED_PROGRAM, path);
        return utf8(path);
    }

    std::string missing() const { return utf8(files.path() / "missing.exe"); }

    std::string folder() const
    {
        const std::filesystem::path path = files.path() / "folder.exe";
        std::filesystem::create_directories(path);
        return utf8(path);
    }

    // What the doctor says about the search, after its choice has been compared with the library's.
    json::value docker(const std::string& lines) const
    {
        programs.add("where", lines);
        return compared("--docker", "docker", "client", "0");
    }

    json::value compared(const char* flag, const char* part, const char* key, const char* useWsl) const
    {
        const RunResult result = orb::process::detail::run({KELPCTL_PROGRAM, flag, "doctor", "--json"});
        json::value section = json::parse(result.standardOutput).at("result").at(part);
        const EnvironmentVariable backend("USE_WSL", useWsl);
        const std::string chosen = orb::lvm::getContainerExecutablePath();
        EXPECT_EQ(section.at(key), chosen.empty() ? json::value() : json::value(chosen));
        return section;
    }

    static std::vector<std::string> reasons(const json::value& section)
    {
        std::vector<std::string> all;
        for (const json::value& candidate : section.at("candidates").as_array()) {
            const std::string reason(candidate.at("reason").as_string());
            all.push_back((candidate.at("taken").as_bool() ? "+" : "") + reason);
        }
        return all;
    }

    TemporaryFolder files;
    InstallTree tree;
    ScriptedPrograms programs;
};

TEST_F(DoctorsChoice, OfTheFirstFile)
{
    EXPECT_THAT(reasons(docker(client("a") + "\r\n" + client("b") + "\r\n")),
                testing::ElementsAre("+regularFile", "notLookedAt"));
}

TEST_F(DoctorsChoice, BehindWhatIsNoFile)
{
    EXPECT_THAT(reasons(docker("C:\\product\\bin\\win64\\docker.exe\r\n" + missing() + "\r\n\r\n" + folder() + "\r\n" +
                               client("a") + "\r\n")),
                testing::ElementsAre("hostsOwn", "missing", "notAFile", "+regularFile"));
}

TEST_F(DoctorsChoice, OfTheOnlyCandidateWhateverItIs)
{
    EXPECT_THAT(reasons(docker(folder() + "\r\n")), testing::ElementsAre("+notAFile"));
    EXPECT_THAT(reasons(docker(missing() + "\r\n")), testing::ElementsAre("+missing"));
}

TEST_F(DoctorsChoice, OfSeveralThatAreNoFilesIsNoPath)
{
    const json::value section = docker(folder() + "\r\n" + missing() + "\r\n");
    EXPECT_THAT(reasons(section), testing::ElementsAre("notAFile", "missing"));
    EXPECT_EQ(section.at("clientExists"), false);
}

TEST_F(DoctorsChoice, WithoutAnyCandidateIsNone)
{
    programs.add("where", client("a"), 1);
    EXPECT_THAT(reasons(compared("--docker", "docker", "client", "0")), testing::IsEmpty());
}

TEST_F(DoctorsChoice, OfTheFirstWslThatAnswers)
{
    programs.add("wsl.exe", "WSL version: 2.4.13.0\r\n");
    const std::string good = utf8(programs.path("wsl.exe"));
    programs.add("where", missing() + "\r\n" + folder() + "\r\n" + good + "\r\n" + good + "\r\n");
    const json::value section = compared("--wsl", "wsl", "executable", "1");
    EXPECT_THAT(reasons(section), testing::ElementsAre(testing::_, testing::_, "+answers", "notLookedAt"));
    EXPECT_EQ(section.at("version"), "2.4.13.0");
}

TEST_F(DoctorsChoice, OfNoWslIsThePlaceWhereWindowsKeepsIt)
{
    const json::value section = compared("--wsl", "wsl", "executable", "1");
    EXPECT_EQ(section.at("fallback"), true);
    EXPECT_THAT(reasons(section), testing::IsEmpty());
}

} // namespace
