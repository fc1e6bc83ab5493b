#include "next_steps.h"

#include "errors.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using kelpctl::identifierSteps;
using kelpctl::nextStep;
using kelpctl::NextStep;
using kelpctl::wslCodePath;
using kelpctl::wslCodeSteps;
using testing::HasSubstr;

TEST(NextSteps, EachIdentifierLeadsToItsOwnText)
{
    for (const NextStep& row : identifierSteps()) {
        EXPECT_EQ(nextStep(row.key, {}), row.text) << row.key;
        EXPECT_GT(std::string(row.text).size(), 20U) << row.key;
    }
}

TEST(NextSteps, EachCodeWinsOverTheIdentifier)
{
    for (const NextStep& row : wslCodeSteps()) {
        const std::string path = std::string("Wsl/Service/RegisterDistro/") + row.key;
        EXPECT_EQ(nextStep("WSL_CANNOT_IMPORT_TAR_FILE", path), row.text) << row.key;
        EXPECT_EQ(nextStep("WSL_CANNOT_IMPORT_TAR_FILE", std::string("Wsl/") + row.key), row.text) << row.key;
    }
}

TEST(NextSteps, EachKeyIsThereOnce)
{
    std::set<std::string> keys;
    for (const NextStep& row : identifierSteps()) {
        EXPECT_TRUE(keys.insert(row.key).second) << row.key;
    }
    for (const NextStep& row : wslCodeSteps()) {
        EXPECT_TRUE(keys.insert(row.key).second) << row.key;
    }
}

struct Row {
    const char* code;
    const char* hint;
};

void PrintTo(const Row& row, std::ostream* stream)
{
    *stream << row.code;
}

class WslCode : public testing::TestWithParam<Row> {};

TEST_P(WslCode, LeadsToItsRemedy)
{
    const std::string path = std::string("Wsl/Service/RegisterDistro/CreateVm/HCS/") + GetParam().code;
    EXPECT_THAT(nextStep("WSL_CANNOT_IMPORT_TAR_FILE", path), HasSubstr(GetParam().hint));
}

INSTANTIATE_TEST_SUITE_P(
    NextSteps, WslCode,
    testing::Values(Row{"ERROR_FILE_NOT_FOUND", "archive that exists"}, Row{"ERROR_PATH_NOT_FOUND", "TEMP"},
                    Row{"ERROR_ALREADY_EXISTS", "kelpctl remove"}, Row{"0x800700b7", "kelpctl remove"},
                    Row{"ERROR_FILE_EXISTS", "Try again"}, Row{"E_ILLEGAL_STATE_CHANGE", "Wait"},
                    Row{"0x8000000d", "Wait"}, Row{"E_INVALIDARG", "letters, digits"},
                    Row{"E_ACCESSDENIED", "read the archive"}, Row{"E_UNEXPECTED", "wsl --shutdown"},
                    Row{"WSL_E_IMPORT_FAILED", "tar -tf"}, Row{"WSL_E_NOT_A_LINUX_DISTRO", "root file system"},
                    Row{"WSL_E_DISTRO_NOT_FOUND", "wsl --list"},
                    Row{"WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED", "ordinary user"},
                    Row{"HCS_E_HYPERV_NOT_INSTALLED", "virtualisation"},
                    Row{"HCS_E_SERVICE_NOT_AVAILABLE", "virtualisation"}, Row{"0x80370102", "virtualisation"},
                    Row{"0xc03a001a", "compression"}));

TEST(NextSteps, UnknownCodeLeavesTheIdentifier)
{
    EXPECT_EQ(nextStep("WSL_CANNOT_IMPORT_TAR_FILE", "Wsl/Service/0x12345678"),
              nextStep("WSL_CANNOT_IMPORT_TAR_FILE", {}));
}

TEST(NextSteps, UnknownIdentifierGetsAStepAsWell)
{
    EXPECT_EQ(nextStep("SOMETHING_NEW", {}), nextStep("UNEXPECTED_ERROR", {}));
}

TEST(NextSteps, CodePathIsFoundInAnyLanguage)
{
    EXPECT_EQ(wslCodePath("Fehlercode: Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS\n"),
              "Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS");
    EXPECT_EQ(wslCodePath("x Wsl/0x80370102."), "Wsl/0x80370102");
    EXPECT_EQ(wslCodePath("Importing the distribution failed."), "");
    EXPECT_EQ(wslCodePath(""), "");
}

} // namespace
