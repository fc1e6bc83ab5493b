#include "failure/wsl_causes.h"

#include "asking/run.h"
#include "failure/advice.h"
#include "failure/causes.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using kelpctl::AdviceKey;
using kelpctl::causeOfWslPath;
using kelpctl::wslCodePath;
using kelpctl::WslWork;

// A line of the file: what is decided about a path.
struct Decision {
    std::string path;
    std::string ofImport;
    std::string ofOther;
};

std::vector<Decision> decisions()
{
    std::vector<Decision> all;
    std::ifstream file(WSL_PATHS);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        Decision decision;
        if (words >> decision.path >> decision.ofImport && !decision.path.starts_with('#')) {
            words >> decision.ofOther;
            decision.ofOther = decision.ofOther.empty() ? decision.ofImport : decision.ofOther;
            all.push_back(decision);
        }
    }
    return all;
}

std::string causeOf(const std::string& path, WslWork work)
{
    const AdviceKey key = causeOfWslPath(path, work);
    return key.empty() ? "none" : key.text();
}

// As readable() makes it of what wsl.exe printed.
std::string pathPrinted(const std::string& output, const std::string& error = {})
{
    return kelpctl::codeOf(kelpctl::runOf({"wsl.exe"}, {-1, output, error}));
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

TEST(WslCauses, EachPathAndCodeIsDecidedAsThePageSays)
{
    const std::vector<Decision> all = decisions();
    ASSERT_GT(all.size(), 300U);
    for (const Decision& decision : all) {
        EXPECT_EQ(causeOf(decision.path, WslWork::import), decision.ofImport) << decision.path;
        EXPECT_EQ(causeOf(decision.path, WslWork::other), decision.ofOther) << decision.path;
        EXPECT_EQ(wslCodePath("Error code: " + decision.path + "\r\n"), decision.path);
    }
}

// By the advice that it leads to.
TEST(WslCauses, EachCauseOfTheTableIsOnThePage)
{
    std::set<std::string> onPage;
    for (const Decision& decision : decisions()) {
        onPage.insert({decision.ofImport, decision.ofOther});
    }
    for (const kelpctl::WslCause& row : kelpctl::wslCauses()) {
        EXPECT_TRUE(row.cause.empty() || onPage.contains(row.cause.text())) << row.cause.text();
    }
}

TEST(WslCauses, NothingIsSaidOfNoPathAtAll)
{
    EXPECT_TRUE(causeOfWslPath("", WslWork::import).empty());
    EXPECT_TRUE(causeOfWslPath("", WslWork::other).empty());
}

TEST(WslCauses, AMissingFileIsTheArchiveOnlyForAnImportThatTheServiceDoesNotKnow)
{
    for (const Decision& decision : decisions()) {
        if (decision.ofImport == "WSL_FILE_MISSING" || decision.ofImport == "WSL_ARCHIVE_IN_USE") {
            EXPECT_EQ(decision.path.find("Service"), std::string::npos) << decision.path;
            EXPECT_NE(decision.ofOther, decision.ofImport) << decision.path;
        }
    }
}

TEST(WslCauses, PathOfThreeHundredContextsIsNotUnderstood)
{
    std::string path = "Wsl";
    for (int count = 0; count < 300; ++count) {
        path += "/Context" + std::to_string(count);
    }
    path += "/ERROR_FILE_NOT_FOUND";
    EXPECT_EQ(wslCodePath("Error code: " + path), path);
    EXPECT_EQ(causeOf(path, WslWork::import), "WSL_CODE_UNKNOWN");
}

TEST(CodePaths, AreFoundInAnyLanguageAndInAnySentence)
{
    const std::string path = "Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS";
    EXPECT_EQ(wslCodePath("Fehlercode: " + path + "\r\n"), path);
    EXPECT_EQ(wslCodePath("错误代码：" + path + "。\r\n"), path);
    EXPECT_EQ(wslCodePath("Der Vorgang (" + path + ") ist gescheitert."), path);
    EXPECT_EQ(wslCodePath("Code d'erreur : " + path + ", voir plus haut"), path);
    EXPECT_EQ(wslCodePath("\"" + path + "\""), path);
    EXPECT_EQ(wslCodePath("x Wsl/0x80370102."), "Wsl/0x80370102");
    EXPECT_EQ(wslCodePath("Wsl/Service/?(8796093022208)/E_FAIL)"), "Wsl/Service/?(8796093022208)/E_FAIL");
}

TEST(CodePaths, AreFoundInBothEncodings)
{
    const std::string path = "Wsl/Service/CreateInstance/MountDisk/HCS/ERROR_FILE_NOT_FOUND";
    EXPECT_EQ(pathPrinted(utf16("Error code: " + path + "\r\n")), path);
    EXPECT_EQ(pathPrinted("Error code: " + path + "\r\n"), path);
    EXPECT_EQ(pathPrinted("bsdtar: no\n", utf16("Error code: " + path + "\r\n")), path);
}

TEST(CodePaths, TheLastOneIsTheFailure)
{
    EXPECT_EQ(wslCodePath("Wsl/Service/E_FAIL\r\nError code: Wsl/Service/WSL_E_DISK_CORRUPTED\r\n"),
              "Wsl/Service/WSL_E_DISK_CORRUPTED");
    EXPECT_EQ(pathPrinted("Error code: Wsl/E_FAIL\r\n", "wsl: Error code: Wsl/Service/CreateVm/HNS/E_ABORT\r\n"),
              "Wsl/E_FAIL")
        << "warnings go to standard error, failures do not";
}

// Each place is looked at once.
TEST(CodePaths, AreFoundInAMebibyteOfBeginnings)
{
    std::string text;
    while (text.size() < 1U << 20U) {
        text += "Wsl/";
    }
    EXPECT_EQ(wslCodePath(text + " Wsl/E_FAIL"), "Wsl/E_FAIL");
}

TEST(CodePaths, WithoutOneThereIsNone)
{
    for (const char* text :
         {"", "Importing the distribution failed.", "Wsl", "Wsl/", "Wsl///", "Wsl/notes.txt", "wsl/E_FAIL",
          "C:\\Wsl/E_FAIL", "/srv/Wsl/E_FAIL", "MyWsl/E_FAIL", "Wsl/?(12/E_FAIL", "Wsl/ E_FAIL"}) {
        EXPECT_EQ(wslCodePath(text), "") << text;
    }
}

// The rest is not put together again: who knows what was between.
TEST(CodePaths, CutByALineEndTheyAreNotUnderstood)
{
    const std::string cut =
        wslCodePath("Error code: Wsl/Service/CreateInstance/CreateVm/\r\nHCS/ERROR_FILE_NOT_FOUND\r\n");
    EXPECT_EQ(cut, "Wsl/Service/CreateInstance/CreateVm");
    EXPECT_EQ(causeOf(cut, WslWork::other), "WSL_CODE_UNKNOWN");
    EXPECT_EQ(causeOf(wslCodePath("Wsl/Service/CreateInst\r\nance/MountDisk/E_FAIL"), WslWork::other),
              "WSL_CODE_UNKNOWN");
}

} // namespace
