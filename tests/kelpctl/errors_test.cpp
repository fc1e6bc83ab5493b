#include "errors.h"

#include "command_line.h"
#include "next_steps.h"

#include "host/configuration.h"
#include "host/exceptions.h"
#include "orb/lvm.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>

namespace {

using namespace orb::container_support;
using kelpctl::Failure;
using kelpctl::nextStep;
using kelpctl::Report;
using kelpctl::reportOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

template <class Thrown>
Report reportOn(const Thrown& thrown)
{
    return reportOf(std::make_exception_ptr(thrown));
}

template <class ID>
foundation::core::except::Exception<ID, std::exception, void> catalogueError(const std::vector<std::string>& texts)
{
    foundation::core::message::Message message{catalogue, ID::identifier, {}};
    for (const std::string& text : texts) {
        message.arguments.emplace_back(text);
    }
    return foundation::core::except::Exception<ID, std::exception, void>(message);
}

// As wsl.exe prints it.
std::string utf16(const std::string& text)
{
    std::string result;
    for (const char character : text) {
        result += character;
        result += '\0';
    }
    return result;
}

TEST(Errors, CatalogueErrorTellsItsTextAndArguments)
{
    const Report report = reportOn(catalogueError<TAR_FILE_NOT_AVAILABLE>({"C:\\hub.tar"}));
    EXPECT_EQ(report.identifier, "TAR_FILE_NOT_AVAILABLE");
    EXPECT_THAT(report.text, HasSubstr("C:\\hub.tar"));
    EXPECT_THAT(report.arguments, ElementsAre("C:\\hub.tar"));
    EXPECT_THAT(report.evidence, IsEmpty());
    EXPECT_EQ(report.nextStep, nextStep("TAR_FILE_NOT_AVAILABLE", {}));
    EXPECT_EQ(report.status, 1);
}

TEST(Errors, TextThatCannotBeTranslatedIsEnglish)
{
    foundation::core::config::Configuration configuration;
    configuration.language = "de";
    configuration.installationRoot = "\xFF";
    foundation::core::config::configure(configuration);
    const Report report = reportOn(catalogueError<TAR_FILE_NOT_AVAILABLE>({"hub.tar"}));
    EXPECT_THAT(report.text, HasSubstr("The archive hub.tar does not exist."));
    EXPECT_EQ(report.identifier, "TAR_FILE_NOT_AVAILABLE");
}

TEST(Errors, CodePathOfWslDecidesTheNextStep)
{
    const std::string failure = "cout = \n" +
                                utf16("Fehler\r\nFehlercode: Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED\r\n") +
                                "\ncerr = \nbsdtar: Error opening archive\n\n";
    const Report report = reportOn(catalogueError<WSL_CANNOT_IMPORT_TAR_FILE>({"hub.tar", failure}));
    EXPECT_EQ(report.identifier, "WSL_CANNOT_IMPORT_TAR_FILE");
    EXPECT_THAT(report.evidence, ElementsAre("Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED"));
    EXPECT_EQ(report.nextStep, nextStep({}, "WSL_E_IMPORT_FAILED"));
    EXPECT_THAT(report.arguments.at(1), HasSubstr("bsdtar"));
    EXPECT_EQ(report.arguments.at(1).find('\0'), std::string::npos);
}

TEST(Errors, FailureWithoutCodePathHasAStepToo)
{
    const Report report = reportOn(catalogueError<WSL_CANNOT_IMPORT_TAR_FILE>({"hub.tar", "cout = \n\ncerr = \n\n"}));
    EXPECT_THAT(report.evidence, IsEmpty());
    EXPECT_EQ(report.nextStep, nextStep("WSL_CANNOT_IMPORT_TAR_FILE", {}));
}

TEST(Errors, OwnFailureShowsItsEvidence)
{
    const Report report =
        reportOn(Failure("REMOVAL_FAILED", "Text.", {"Fehlercode: Wsl/Service/WSL_E_DISTRO_NOT_FOUND"}));
    EXPECT_EQ(report.identifier, "REMOVAL_FAILED");
    EXPECT_EQ(report.text, "Text.");
    EXPECT_EQ(report.evidence, report.arguments);
    EXPECT_THAT(report.evidence, ElementsAre("Fehlercode: Wsl/Service/WSL_E_DISTRO_NOT_FOUND"));
    EXPECT_EQ(report.nextStep, nextStep({}, "WSL_E_DISTRO_NOT_FOUND"));
}

TEST(Errors, WrongUsageHasAStatusOfItsOwn)
{
    const Report report = reportOn(kelpctl::UsageError("setup", "Too much"));
    EXPECT_EQ(report.identifier, "USAGE");
    EXPECT_EQ(report.text, "Too much");
    EXPECT_EQ(report.status, 2);
}

TEST(Errors, ProgramThatCannotBeStartedIsNamed)
{
    const std::system_error error(ENOENT, std::generic_category(), "where");
    const Report report = reportOn(error);
    EXPECT_EQ(report.identifier, "PROGRAM_NOT_STARTED");
    EXPECT_THAT(report.text, HasSubstr("where"));
}

struct Other {
    std::exception_ptr error;
    const char* identifier;
    const char* text;
};

void PrintTo(const Other& other, std::ostream* stream)
{
    *stream << other.identifier << " " << other.text;
}

class OtherError : public testing::TestWithParam<Other> {};

TEST_P(OtherError, HasAnIdentifierOfItsOwn)
{
    const Report report = reportOf(GetParam().error);
    EXPECT_EQ(report.identifier, GetParam().identifier);
    EXPECT_THAT(report.text, HasSubstr(GetParam().text));
    EXPECT_EQ(report.nextStep, nextStep(GetParam().identifier, {}));
    EXPECT_EQ(report.status, 1);
}

std::exception_ptr textError()
{
    return std::make_exception_ptr(
        std::system_error(std::make_error_code(std::errc::illegal_byte_sequence), "not UTF-8"));
}

std::exception_ptr fileError()
{
    return std::make_exception_ptr(
        std::filesystem::filesystem_error("exists", "some_file", std::make_error_code(std::errc::permission_denied)));
}

INSTANTIATE_TEST_SUITE_P(
    Errors, OtherError,
    testing::Values(Other{textError(), "TEXT_NOT_VALID", "not UTF-8"},
                    Other{fileError(), "FILE_NOT_ACCESSIBLE", "some_file"},
                    Other{std::make_exception_ptr(std::invalid_argument("bad")), "INVALID_ARGUMENT", "bad"},
                    Other{std::make_exception_ptr(std::bad_alloc()), "OUT_OF_MEMORY", "memory"},
                    Other{std::make_exception_ptr(std::runtime_error("odd")), "UNEXPECTED_ERROR", "odd"},
                    Other{std::make_exception_ptr(7), "UNEXPECTED_ERROR", "unknown"}));

} // namespace
