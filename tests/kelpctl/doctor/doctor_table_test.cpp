#include "doctor/doctor.h"

#include "examinations.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using kelpctl::CandidateState;
using kelpctl::candidateText;
using kelpctl::Examination;
using kelpctl::judge;
using kelpctl::Judgement;
using kelpctl::Names;
using kelpctl::Source;
using testing::HasSubstr;
using testing::Not;

constexpr std::chrono::seconds limit(10);

std::string table(const Examination& found, bool colours = false)
{
    const Judgement judgement = judge(found);
    const Names names{"kelpctl", found.image, found.container, {}};
    std::string text;
    for (const std::string& line : describe(found, judgement, names, colours).lines) {
        text += line + "\n";
    }
    return text;
}

constexpr char goodTable[] = R"table(environment
           backend                 WSL: USE_WSL is not set
           release                 r1 (KORVANE_RELEASE)
           installation root       C:\tree (--root)
  ok       name                    the distribution kelp_hub_r1
           container               WSL needs none

account
           account                 PC\anna, session 1

WSL
  ok       wsl.exe                 C:\Program Files\WSL\wsl.exe
           candidates              C:\Program Files\WSL\wsl.exe
                                     taken: it answers "-v"
           version                 2.4.13.0
  ok       distribution            kelp_hub_r1: Running, WSL 2, the default one
           other distributions     none
           adapter address         none
                                     looked for: "(WSL)" in the name, "Virtual" in the description, and an IPv4 address

settings of WSL
           policies                none
           .wslconfig              none

Docker (not the backend)
           docker.exe              not found
           candidates              none: "where docker.exe": it failed with status 1 (0x00000001)

archives
           folder                  C:\tree\tar_files
  ok       kelp_hub_distro.tar.gz  1000 bytes, gzip; "setup" would take this one
                                   not known, unpacked 2.9 KiB (3000 bytes)
           kelp_hub_distro.tar     missing
           kelp_hub_docker.tar.gz  2.0 KiB (2000 bytes), gzip
           kelp_hub_docker.tar     missing

temporary folder
  ok       folder                  C:\Temp
           state                   may be written to
           free                    1.0 GiB (1073741824 bytes)

verdict
  ok       "kelpctl setup" would do nothing: kelp_hub_r1 exists.

next steps
  note     The environment is there.
           Run a program in it with "kelpctl exec -- PROGRAM".
)table";

TEST(DoctorTable, ShowsAComputerOnWhichAllIsWell)
{
    EXPECT_EQ(table(goodWsl()), goodTable);
}

TEST(DoctorTable, MarksWhatIsWrongWhereItIs)
{
    Examination found = goodDocker();
    found.docker.engine.answer = failed({"docker.exe", "version"}, 1, "");
    found.docker.engine.answer.error = "Cannot connect to the Docker daemon.\n";
    const std::string text = table(found);
    EXPECT_THAT(text, HasSubstr("  PROBLEM  engine                  cannot be reached: it failed with status 1 "
                                "(0x00000001)\n"
                                "                                       Cannot connect to the Docker daemon.\n"));
    EXPECT_THAT(text, HasSubstr("  ok       docker.exe "));
    EXPECT_THAT(text, HasSubstr("           wsl.exe ")) << "what is not the backend is neither right nor wrong";
    EXPECT_THAT(text, HasSubstr("  PROBLEM  One thing would keep \"kelpctl setup\" from working.\n"));
    EXPECT_THAT(text, HasSubstr("  PROBLEM  The Docker engine does not answer.\n           Start Docker; "));
}

TEST(DoctorTable, CountsProblems)
{
    Examination found = goodDocker();
    found.image = "KELP";
    found.docker.engine.system = "windows";
    EXPECT_THAT(table(found), HasSubstr("2 things would keep \"kelpctl setup\" from working."));
}

TEST(DoctorTable, SaysWhichSettingDecidedWhat)
{
    Examination found = goodDocker();
    EXPECT_THAT(table(found), HasSubstr("Docker: --docker was given\n"));
    found.backendSetting = {"no", Source::variable};
    found.release = {};
    found.root.source = Source::builtIn;
    EXPECT_THAT(table(found), HasSubstr("Docker: USE_WSL is \"no\"\n"));
    EXPECT_THAT(table(found), HasSubstr("none: neither --release nor KORVANE_RELEASE names one\n"));
    EXPECT_THAT(table(found), HasSubstr("C:\\tree (where kelpctl is installed)\n"));
}

TEST(DoctorTable, ListsTenOthers)
{
    Examination found = goodDocker();
    for (int number = 1; number <= 12; ++number) {
        found.docker.images.push_back({"other" + std::to_string(number), "latest", "id", "1MB"});
    }
    const std::string text = table(found);
    EXPECT_THAT(text, HasSubstr("other10: tag latest, 1MB\n"));
    EXPECT_THAT(text, Not(HasSubstr("other11")));
    EXPECT_THAT(text, HasSubstr("and 2 more; --json shows all\n"));
}

TEST(DoctorTable, SaysWhatTheAdapterRulePassedOver)
{
    Examination found = goodWsl();
    found.adapter.passedOver = {"vEthernet (WSL (Hyper-V firewall))"};
    EXPECT_THAT(table(found), HasSubstr("passed over: vEthernet (WSL (Hyper-V firewall))\n"));
    found.adapter.address = "172.20.0.1";
    found.adapter.name = "vEthernet (WSL)";
    EXPECT_THAT(table(found), HasSubstr("172.20.0.1 (vEthernet (WSL))\n"));
    found.adapter.failure = "out of order";
    EXPECT_THAT(table(found), HasSubstr("not known: out of order\n"));
}

TEST(DoctorTable, ShowsWhatOthersHaveDecidedAboutWsl)
{
    Examination found = goodWsl();
    found.account = kelpctl::Account{"PC\\anna", true, false, 0};
    found.wsl.policies = std::vector<kelpctl::Policy>{{"AllowInboxWSL", 0}, {"AllowWSL", 0}};
    found.wsl.config = kelpctl::WslConfigFile{"C:\\Users\\anna\\.wslconfig", true, {"C:\\k", "mirrored"}, false};
    found.wsl.otherAccounts = std::vector<std::string>{"PC\\bert"};
    const std::string text = table(found);
    EXPECT_THAT(text, HasSubstr("  note     account                 PC\\anna, as administrator, session 0\n"));
    EXPECT_THAT(text, HasSubstr("  PROBLEM  policies                AllowInboxWSL = 0, AllowWSL = 0\n"));
    EXPECT_THAT(text, HasSubstr("  PROBLEM  .wslconfig              C:\\Users\\anna\\.wslconfig\n"));
    EXPECT_THAT(text, HasSubstr("           networking mode         mirrored\n"));
    EXPECT_THAT(text, HasSubstr("           kernel                  C:\\k: missing\n"));
    EXPECT_THAT(text, HasSubstr("           registered for          PC\\bert\n"));
}

TEST(DoctorTable, SaysWhatTheSystemDidNotTellInTime)
{
    Examination found = goodWsl();
    found.account.reset();
    found.wsl.policies.reset();
    found.wsl.config.reset();
    const std::string text = table(found);
    EXPECT_THAT(text, HasSubstr("account                 not known\n"));
    EXPECT_THAT(text, HasSubstr("policies                not known: the system did not tell in time\n"));
    EXPECT_THAT(text, HasSubstr(".wslconfig              not known: the system did not tell in time\n"));
}

TEST(DoctorTable, ShowsWhichEngineIsAskedAndWhy)
{
    Examination found = goodDocker();
    EXPECT_THAT(table(found), HasSubstr("context                 default (nothing names another)\n"));
    found.docker.settings = {kelpctl::EngineChoice::configuration, "desktop-linux", {}};
    found.docker.endpoint = "npipe:////./pipe/dockerDesktopLinuxEngine";
    EXPECT_THAT(table(found), HasSubstr("context                 desktop-linux (the client's configuration)\n"));
    EXPECT_THAT(table(found), HasSubstr("endpoint                npipe:////./pipe/dockerDesktopLinuxEngine\n"));
    found.docker.settings = {kelpctl::EngineChoice::hostVariable, "tcp://h", {}};
    EXPECT_THAT(table(found), HasSubstr("context                 none: DOCKER_HOST is \"tcp://h\"\n"));
}

TEST(DoctorTable, TerminalObeysNothing)
{
    Examination found = goodWsl();
    found.wsl.distributions.push_back({"\x1b[2Jevil", "Sto\x07pped", 2, false});
    found.wsl.candidates[0].path = "C:\\\x1b]0;title\x07\\wsl.exe";
    found.adapter.passedOver = {"WSL\r\n"};
    found.root.value = "C:\\a\nb";
    const std::string text = table(found);
    EXPECT_EQ(text.find_first_of("\x1b\x07\r"), std::string::npos) << text;
    EXPECT_THAT(text, HasSubstr("\\x1B[2Jevil: Sto\\x07pped"));
    EXPECT_THAT(text, HasSubstr("C:\\a\\nb"));
}

TEST(DoctorTable, ColoursAreForTerminalsOnly)
{
    EXPECT_THAT(table(goodWsl(), true), HasSubstr("\x1b[32mok\x1b[0m"));
    EXPECT_THAT(table(goodWsl(), false), Not(HasSubstr("\x1b")));
}

TEST(DoctorTable, LinesAreAtMostAHundredAndTwentyColumns)
{
    for (Examination found : {goodWsl(), goodDocker()}) {
        found.wsl.distributions.clear();
        found.docker.images.clear();
        found.archives.clear();
        found.temporary.writable = false;
        found.image = "KELP hub";
        std::string line;
        std::istringstream lines(table(found));
        while (std::getline(lines, line)) {
            EXPECT_LE(line.size(), 120U) << line;
        }
    }
}

TEST(Candidates, EachStateIsAWord)
{
    const auto text = [](CandidateState state, bool taken) {
        return candidateText({"x", state, taken, failed({"x"}, -1, "")}, limit);
    };
    EXPECT_EQ(text(CandidateState::answers, true), "taken: it answers \"-v\"");
    EXPECT_EQ(text(CandidateState::failed, false), "passed over: \"-v\" failed with status -1 (0xFFFFFFFF)");
    EXPECT_EQ(text(CandidateState::notStarted, false), "passed over: it could not be started");
    EXPECT_EQ(text(CandidateState::timedOut, false), "passed over: it did not answer \"-v\" within 10 s");
    EXPECT_EQ(text(CandidateState::notLookedAt, false), "not looked at: the search had ended");
    EXPECT_EQ(text(CandidateState::regularFile, true), "taken: it is the first that is a file");
    EXPECT_EQ(text(CandidateState::hostsOwn, false),
              "passed over: it lies in bin\\win64, among the host's own programs");
    EXPECT_EQ(text(CandidateState::missing, false), "passed over: it does not exist");
    EXPECT_EQ(text(CandidateState::link, true), "taken all the same, since no other is better: it is a link");
    EXPECT_EQ(text(CandidateState::notAFile, false), "passed over: it is no file");
    EXPECT_EQ(text(CandidateState::notReadable, false), "it cannot be looked at, which ends the search");
}

} // namespace
