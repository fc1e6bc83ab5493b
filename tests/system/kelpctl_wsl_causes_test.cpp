// What a person reads when wsl.exe fails, for everything that can be behind it: wsl.exe prints the code path, as it does,
// and kelpctl tells cause, evidence and next step.
#include "machine.h"

#include "failure/advice_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace json = boost::json;
using orb::process::detail::RunResult;
using testing::HasSubstr;
using testing::Not;

constexpr char none[] = "none";

// A failure and what is behind it.
struct Met {
    std::string path;
    std::string cause;
};

void PrintTo(const Met& met, std::ostream* stream)
{
    *stream << met.path;
}

// The first path for each cause, of an import or of anything else.
std::vector<Met> metBy(bool import)
{
    std::vector<Met> all;
    std::set<std::string> causes;
    std::ifstream file(WSL_PATHS);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string path;
        std::string ofImport;
        std::string ofOther;
        words >> path >> ofImport >> ofOther;
        const std::string& cause = import || ofOther.empty() ? ofImport : ofOther;
        if (path.starts_with("Wsl/") && causes.insert(cause).second) {
            all.push_back({path, cause});
        }
    }
    return all;
}

std::string causeName(const testing::TestParamInfo<Met>& info)
{
    return info.param.cause;
}

// Up to what stands for a name.
std::string beginning(const std::string& text)
{
    return text.substr(0, text.find('{'));
}

const kelpctl::Advice& advice(const std::string& key)
{
    const auto found = std::find_if(kelpctl::allAdvice.begin(), kelpctl::allAdvice.end(),
                                    [&key](const kelpctl::Advice& each) { return key == each.key; });
    if (found == kelpctl::allAdvice.end()) {
        throw std::runtime_error(key + " has no advice");
    }
    return *found;
}

class WslCause : public testing::TestWithParam<Met> {
protected:
    ~WslCause() override { wsl.clear(); }

    // Another release than that of the tests that write a lost disk into the registry, which Wine's programs share.
    RunResult kelpctl(const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> line = {KELPCTL_PROGRAM, "--wsl", "--release", "R2027a", "--root", utf8(tree.root())};
        line.insert(line.end(), arguments.begin(), arguments.end());
        return orb::process::detail::run(line);
    }

    static void expectTold(const std::string& text, const std::string& path, const std::string& cause)
    {
        EXPECT_THAT(text, HasSubstr("    code: " + path + "\n"));
        EXPECT_THAT(text, HasSubstr("evidence: "));
        EXPECT_THAT(text, HasSubstr("next step: "));
        if (cause == none) {
            EXPECT_THAT(text, Not(HasSubstr("cause: ")));
        } else {
            EXPECT_THAT(text, HasSubstr("cause: " + beginning(advice(cause).text)));
            EXPECT_THAT(text, HasSubstr("next step: " + beginning(advice(cause).nextStep)));
        }
    }

    static void expectObject(const json::value& error, const std::string& path, const std::string& cause)
    {
        EXPECT_EQ(error.at("evidence").at("code"), json::value(path));
        if (cause == none) {
            EXPECT_EQ(error.at("cause"), nullptr);
        } else {
            EXPECT_EQ(error.at("cause").at("identifier"), json::value(cause));
            EXPECT_THAT(std::string(error.at("next").as_string()), HasSubstr(beginning(advice(cause).nextStep)));
        }
    }

    InstallTree tree;
    Wsl wsl;
    // UTF-16, as wsl.exe prints unless it is told otherwise.
    EnvironmentVariable encoding{"WSL_UTF8", "0"};
    // Last: the others have folders of their own.
    TemporaryDirectory temporary;
};

class WslCauseOfImport : public WslCause {};

TEST_P(WslCauseOfImport, IsToldBySetup)
{
    tree.install();
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "code=" + GetParam().path + "@import");
    const RunResult failed = kelpctl({"setup"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.standardError, HasSubstr("error: WSL_CANNOT_IMPORT_TAR_FILE\n"));
    expectTold(failed.standardError, GetParam().path, GetParam().cause);
}

INSTANTIATE_TEST_SUITE_P(Setup, WslCauseOfImport, testing::ValuesIn(metBy(true)), causeName);

class WslCauseOfRun : public WslCause {};

TEST_P(WslCauseOfRun, IsToldByExec)
{
    wsl.import("kelp_hub_R2027a");
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "code=" + GetParam().path + "@exec");
    const RunResult failed = kelpctl({"--json", "exec", "--", "uname"});
    EXPECT_NE(failed.status, 0);
    // kelpctl knows which distribution it is that is not there.
    const std::string cause =
        GetParam().cause == "WSL_DISTRIBUTION_UNKNOWN" ? std::string("DISTRIBUTION_MISSING") : GetParam().cause;
    expectObject(json::parse(failed.standardOutput).at("error"), GetParam().path, cause);
}

INSTANTIATE_TEST_SUITE_P(Exec, WslCauseOfRun, testing::ValuesIn(metBy(false)), causeName);

class WslCauseOfListing : public WslCause {};

TEST_P(WslCauseOfListing, IsToldByDoctorAndCheck)
{
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "code=" + GetParam().path + "@list");
    expectTold(kelpctl({"check"}).standardError, GetParam().path, GetParam().cause);
    const RunResult examined = kelpctl({"doctor"});
    EXPECT_EQ(examined.status, 1);
    EXPECT_THAT(examined.standardOutput, HasSubstr(GetParam().path));
    EXPECT_THAT(examined.standardOutput, HasSubstr(beginning(advice(GetParam().cause).text)));
}

// What no build is known to print. Nothing is guessed: what was printed is shown, and an unknown path is called that.
struct Oddity {
    const char* name;
    std::string text;
    // As it is found in there, empty for none.
    std::string path;
    std::string cause;
};

std::string threeHundredContexts()
{
    std::string path = "Wsl/Service";
    for (int count = 0; count < 300; ++count) {
        path += "/Context" + std::to_string(count);
    }
    return path + "/ERROR_FILE_NOT_FOUND";
}

std::vector<Oddity> oddities()
{
    const std::string disk = "Wsl/Service/CreateInstance/MountDisk/HCS/E_ACCESSDENIED";
    return {
        {"unknown contexts", "Error code: Wsl/Service/NewThing/OtherThing/ERROR_FILE_NOT_FOUND\r\n",
         "Wsl/Service/NewThing/OtherThing/ERROR_FILE_NOT_FOUND", "WSL_CODE_UNKNOWN"},
        {"unknown code", "Error code: Wsl/Service/CreateInstance/WSL_E_NEW_THING\r\n",
         "Wsl/Service/CreateInstance/WSL_E_NEW_THING", "WSL_CODE_UNKNOWN"},
        {"three hundred contexts", "Error code: " + threeHundredContexts() + "\r\n", threeHundredContexts(),
         "WSL_CODE_UNKNOWN"},
        {"no code", "Error code: Wsl/Service/\r\n", "Wsl/Service", "WSL_CODE_UNKNOWN"},
        {"no path", "Something went wrong.\r\n", "", none},
        {"two paths", "Wsl/Service/E_UNEXPECTED\r\nError code: " + disk + "\r\n", disk, "WSL_DISK_DENIED"},
        {"in a sentence",
         "Der Vorgang (" + disk +
             ") ist \xc3\xbc"
             "berraschend gescheitert.\r\n",
         disk, "WSL_DISK_DENIED"},
        {"cut by a line end", "Error code: Wsl/Service/CreateInstance/\r\nMountDisk/HCS/E_ACCESSDENIED\r\n",
         "Wsl/Service/CreateInstance", "WSL_CODE_UNKNOWN"},
        {"line end of old builds", "Error code: " + disk + "\r\r\n", disk, "WSL_DISK_DENIED"},
    };
}

// ASCII and Latin letters only.
std::string utf16(const std::string& utf8)
{
    std::string result;
    for (std::size_t index = 0; index < utf8.size(); ++index) {
        const auto byte = static_cast<unsigned char>(utf8[index]);
        const bool two = byte >= 0xc0;
        result +=
            two ? static_cast<char>(((byte & 0x03U) << 6U) | (static_cast<unsigned char>(utf8[index + 1]) & 0x3fU))
                : utf8[index];
        result += '\0';
        index += two ? 1 : 0;
    }
    return result;
}

class WslOddity : public WslCause {};

TEST_F(WslOddity, IsShownAndNothingIsGuessed)
{
    wsl.import("kelp_hub_R2027a");
    const std::filesystem::path file = temporary.path() / "printed";
    for (const Oddity& oddity : oddities()) {
        for (const std::string& printed : {oddity.text, utf16(oddity.text)}) {
            std::ofstream(file, std::ios::binary) << printed;
            const EnvironmentVariable mode("WSL_STAND_IN_MODE", "bytes=" + unixPath(file) + "@exec");
            const RunResult failed = kelpctl({"--json", "exec", "--", "uname"});
            EXPECT_NE(failed.status, 0);
            const json::value error = json::parse(failed.standardOutput).at("error");
            const json::value& code = error.at("evidence").at("code");
            EXPECT_EQ(code, oddity.path.empty() ? json::value() : json::value(oddity.path)) << oddity.name;
            const std::string cause =
                error.at("cause").is_null() ? none : std::string(error.at("cause").at("identifier").as_string());
            EXPECT_EQ(cause, oddity.cause) << oddity.name;
            const std::string shown(error.at("evidence").at("output").as_string());
            EXPECT_THAT(shown, HasSubstr(oddity.text.substr(0, 11))) << oddity.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Doctor, WslCauseOfListing,
                         testing::Values(Met{"Wsl/EnumerateDistros/Service/ReadDistroConfig/E_UNEXPECTED",
                                             "WSL_ENTRY_BROKEN"},
                                         Met{"Wsl/ERROR_ACCESS_DISABLED_BY_POLICY", "WSL_POLICY"},
                                         Met{"Wsl/CallMsi/REGDB_E_CLASSNOTREG", "WSL_INSTALLATION_BROKEN"},
                                         Met{"Wsl/0x12345678", "WSL_CODE_UNKNOWN"}),
                         causeName);

} // namespace
