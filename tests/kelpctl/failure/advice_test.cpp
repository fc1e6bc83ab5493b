#include "failure/advice.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

namespace {

using kelpctl::Advice;
using kelpctl::adviceFor;
using kelpctl::adviceNextStep;
using kelpctl::adviceText;
using kelpctl::allAdvice;
using kelpctl::causeOfWslCode;
using kelpctl::Names;
using kelpctl::WslCode;
using kelpctl::wslCodePath;
using kelpctl::wslCodes;
using testing::HasSubstr;

TEST(Advice, EachKeyIsThereOnceAndLeadsToItsRow)
{
    std::set<std::string> keys;
    for (const Advice& advice : allAdvice) {
        EXPECT_TRUE(keys.insert(advice.key).second) << advice.key;
        EXPECT_EQ(&adviceFor(kelpctl::AdviceKey(advice)), &advice) << advice.key;
    }
}

TEST(Advice, EachRowHasANextStep)
{
    for (const Advice& advice : allAdvice) {
        EXPECT_GT(std::string(advice.nextStep).size(), 15U) << advice.key;
        EXPECT_EQ(std::string(advice.nextStep).back(), '.') << advice.key;
    }
}

TEST(Advice, OnlyTheHostsOwnErrorsHaveNoTextHere)
{
    std::set<std::string> keys;
    for (const Advice& advice : allAdvice) {
        if (*advice.text == '\0') {
            keys.insert(advice.key);
        }
    }
    EXPECT_EQ(keys, (std::set<std::string>{"DOCKER_NOT_AVAILABLE", "IMAGE_NOT_EXIST", "TAR_FILE_LOAD_ERROR",
                                           "TAR_FILE_NOT_AVAILABLE", "WSL_CANNOT_IMPORT_TAR_FILE"}));
}

TEST(Advice, UnknownKeyGetsARowAsWell)
{
    EXPECT_EQ(std::string(kelpctl::adviceKey("SOMETHING_NEW").text()), "UNEXPECTED_ERROR");
}

TEST(Advice, NamesAreFilledIn)
{
    const Names names{"kelpctl --docker", "hub_R1", "box", "the subject"};
    EXPECT_EQ(adviceText(adviceFor("CONTAINER_NOT_RUNNING"), names), "The container box does not run.");
    EXPECT_THAT(adviceNextStep(adviceFor("CONTAINER_NOT_RUNNING"), names),
                HasSubstr("\"kelpctl --docker start --container box\""));
    EXPECT_EQ(adviceText(adviceFor("DISTRIBUTION_MISSING"), names), "There is no distribution hub_R1.");
    EXPECT_EQ(adviceText(adviceFor("TOOL_HANGS"), names), "the subject does not answer.");
}

TEST(Advice, EachPlaceholderStandsForAName)
{
    const Names names{"invocation", "image", "container", "subject"};
    for (const Advice& advice : allAdvice) {
        EXPECT_EQ(adviceText(advice, names).find('{'), std::string::npos) << advice.key;
        EXPECT_EQ(adviceNextStep(advice, names).find('{'), std::string::npos) << advice.key;
    }
}

TEST(WslCodes, EachLeadsToAdviceOfItsOwn)
{
    for (const WslCode& row : wslCodes()) {
        EXPECT_STREQ(causeOfWslCode(std::string("Wsl/Service/RegisterDistro/") + row.code).text(), row.cause.text())
            << row.code;
        EXPECT_STREQ(causeOfWslCode(std::string("Wsl/") + row.code).text(), row.cause.text()) << row.code;
    }
}

TEST(WslCodes, EachIsThereOnce)
{
    std::set<std::string> codes;
    for (const WslCode& row : wslCodes()) {
        EXPECT_TRUE(codes.insert(row.code).second) << row.code;
    }
}

struct Row {
    const char* path;
    const char* cause;
};

void PrintTo(const Row& row, std::ostream* stream)
{
    *stream << row.path;
}

class KnownCode : public testing::TestWithParam<Row> {};

TEST_P(KnownCode, HasItsCause)
{
    EXPECT_STREQ(causeOfWslCode(GetParam().path).text(), GetParam().cause);
}

INSTANTIATE_TEST_SUITE_P(
    WslCodes, KnownCode,
    testing::Values(Row{"Wsl/ERROR_FILE_NOT_FOUND", "WSL_FILE_MISSING"}, Row{"Wsl/0x80070002", "WSL_FILE_MISSING"},
                    Row{"Wsl/Service/CreateInstance/MountVhd/HCS/ERROR_FILE_NOT_FOUND", "WSL_DISK_MISSING"},
                    Row{"Wsl/Service/CreateInstance/MountVhd/HCS/ERROR_PATH_NOT_FOUND", "WSL_DISK_MISSING"},
                    Row{"Wsl/ERROR_PATH_NOT_FOUND", "WSL_PATH_MISSING"}, Row{"Wsl/0x80070003", "WSL_PATH_MISSING"},
                    Row{"Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS", "WSL_NAME_TAKEN"},
                    Row{"Wsl/Service/0x800700b7", "WSL_NAME_TAKEN"},
                    Row{"Wsl/Service/RegisterDistro/ERROR_FILE_EXISTS", "WSL_LOCATION_TAKEN"},
                    Row{"Wsl/Service/0x80070050", "WSL_LOCATION_TAKEN"},
                    Row{"Wsl/Service/RegisterDistro/E_ILLEGAL_STATE_CHANGE", "WSL_BUSY"},
                    Row{"Wsl/Service/0x8000000d", "WSL_BUSY"}, Row{"Wsl/Service/WSL_E_DISTRO_NOT_STOPPED", "WSL_BUSY"},
                    Row{"Wsl/Service/RegisterDistro/E_INVALIDARG", "WSL_NAME_INVALID"},
                    Row{"Wsl/Service/0x80070057", "WSL_NAME_INVALID"},
                    Row{"Wsl/Service/E_ACCESSDENIED", "WSL_ACCESS_DENIED"},
                    Row{"Wsl/Service/0x80070005", "WSL_ACCESS_DENIED"},
                    Row{"Wsl/Service/E_UNEXPECTED", "WSL_SERVICE_BROKEN"},
                    Row{"Wsl/Service/0x8000ffff", "WSL_SERVICE_BROKEN"},
                    Row{"Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED", "WSL_ARCHIVE_BROKEN"},
                    Row{"Wsl/Service/RegisterDistro/WSL_E_NOT_A_LINUX_DISTRO", "WSL_ARCHIVE_NOT_LINUX"},
                    Row{"Wsl/Service/WSL_E_DISTRO_NOT_FOUND", "WSL_DISTRIBUTION_UNKNOWN"},
                    Row{"Wsl/Service/WSL_E_LOCAL_SYSTEM_NOT_SUPPORTED", "WSL_SYSTEM_ACCOUNT"},
                    Row{"Wsl/WSL_E_VIRTUAL_MACHINE_PLATFORM_REQUIRED", "WSL_VIRTUALISATION_OFF"},
                    Row{"Wsl/Service/CreateVm/HCS/HCS_E_HYPERV_NOT_INSTALLED", "WSL_VIRTUALISATION_OFF"},
                    Row{"Wsl/Service/0x80370102", "WSL_VIRTUALISATION_OFF"},
                    Row{"Wsl/Service/CreateVm/HCS/HCS_E_SERVICE_NOT_AVAILABLE", "WSL_COMPONENT_MISSING"},
                    Row{"Wsl/WSL_E_WSL_OPTIONAL_COMPONENT_REQUIRED", "WSL_COMPONENT_MISSING"},
                    Row{"Wsl/WSL_E_WSL1_NOT_SUPPORTED", "WSL_COMPONENT_MISSING"},
                    Row{"Wsl/Service/RegisterDistro/0xc03a001a", "WSL_DISK_ATTRIBUTES"},
                    Row{"Wsl/Service/RegisterDistro/ERROR_DISK_FULL", "WSL_DISK_FULL"},
                    Row{"Wsl/Service/0x80070070", "WSL_DISK_FULL"},
                    Row{"Wsl/Service/CreateVm/HCS_E_CONNECTION_TIMEOUT", "WSL_TIMED_OUT"},
                    Row{"Wsl/WSL_E_USER_NOT_FOUND", "WSL_STATUS_67"}, Row{"Wsl/WSL_E_TTY_LIMIT", "WSL_STATUS_87"}));

TEST(WslCodes, EachIsHeldToItsCauseAbove)
{
    EXPECT_EQ(wslCodes().size(), 35U) << "a new code needs a row above";
}

TEST(WslCodes, UnknownCodeHasNoCause)
{
    EXPECT_TRUE(causeOfWslCode("Wsl/Service/0x12345678").empty());
    EXPECT_TRUE(causeOfWslCode("Wsl/Service/MY_E_INVALIDARG").empty());
    EXPECT_TRUE(causeOfWslCode("").empty());
}

TEST(WslCodes, CodePathIsFoundInAnyLanguage)
{
    EXPECT_EQ(wslCodePath("Fehlercode: Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS\n"),
              "Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS");
    EXPECT_EQ(wslCodePath("x Wsl/0x80370102."), "Wsl/0x80370102");
    EXPECT_EQ(wslCodePath("Importing the distribution failed."), "");
    EXPECT_EQ(wslCodePath(""), "");
}

} // namespace
