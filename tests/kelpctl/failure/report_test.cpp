#include "failure/report.h"

#include "commands/command_line.h"
#include "fake_lvm.h"
#include "session.h"
#include "terminal/text.h"

#include "host/configuration.h"
#include "host/exceptions.h"
#include "orb/lvm.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <new>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace {

using namespace orb::container_support;
using kelpctl::adviceFor;
using kelpctl::Failure;
using kelpctl::namesOf;
using kelpctl::Report;
using kelpctl::reportOf;
using kelpctl::Request;
using kelpctl::RunJournal;
using orb::process::detail::RunResult;
using testing::ElementsAre;
using testing::HasSubstr;

// What stands behind a command that failed.
class Scene {
public:
    Request request;

    // A program that ran before the failure.
    void ran(const std::vector<std::string>& arguments, const RunResult& result)
    {
        orb::process::detail::RunOptions options;
        journal_.starting(arguments, options);
        journal_.ended(arguments, &result);
    }

    // What programs answer when they are asked afterwards; any other fails.
    void answers(const std::string& commandLine, const std::string& output) { answers_[commandLine] = {0, output, {}}; }

    Report report(const std::exception_ptr& error) { return reportOf(error, {request, console_, programs_, journal_}); }

    template <class Thrown>
    Report reportOn(const Thrown& thrown)
    {
        return report(std::make_exception_ptr(thrown));
    }

private:
    kelpctl::Run answer(const std::vector<std::string>& arguments)
    {
        std::string line;
        for (const std::string& argument : arguments) {
            line += (line.empty() ? "" : " ") + argument;
        }
        const auto known = answers_.find(line);
        return kelpctl::runOf(arguments, known == answers_.end() ? RunResult{1, {}, "no"} : known->second);
    }

    std::map<std::string, RunResult> answers_;
    std::ostringstream stream_;
    RunJournal journal_;
    kelpctl::Console console_{stream_, stream_};
    kelpctl::Programs programs_{[this](const auto& arguments, const auto& /*environment*/, const auto& /*folder*/) {
                                    return answer(arguments);
                                },
                                {}};
    EnvironmentVariable useWsl_{"USE_WSL"};
};

class Docker : public Scene {
public:
    Docker()
    {
        setVariable("USE_WSL", "0");
        request.name = "kelp_hub_r1";
    }
};

constexpr char engineQuery[] = "docker.exe version --format {{json .}}";
constexpr char containerQuery[] = "docker.exe container inspect --format {{.State.Status}} kelp_hub";
constexpr char imageQuestion[] = "docker.exe image inspect --format {{.Id}} kelp_hub_r1";

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
    Scene scene;
    const Report report = scene.reportOn(catalogueError<TAR_FILE_NOT_AVAILABLE>({"C:\\hub.tar"}));
    EXPECT_EQ(report.identifier, "TAR_FILE_NOT_AVAILABLE");
    EXPECT_THAT(report.text, HasSubstr("C:\\hub.tar"));
    EXPECT_THAT(report.arguments, ElementsAre("C:\\hub.tar"));
    EXPECT_FALSE(report.evidence.has_value());
    EXPECT_FALSE(report.cause.has_value());
    EXPECT_EQ(report.nextStep, "Name an archive that exists, or the installation that holds one with --root; \"kelpctl "
                               "doctor\" shows where archives are looked for.");
    EXPECT_EQ(report.status, 1);
}

TEST(Errors, TextThatCannotBeTranslatedIsEnglish)
{
    foundation::core::config::Configuration configuration;
    configuration.setLanguage("de");
    configuration.setInstallationRoot("\xFF");
    foundation::core::config::configure(configuration);
    Scene scene;
    const Report report = scene.reportOn(catalogueError<TAR_FILE_NOT_AVAILABLE>({"hub.tar"}));
    EXPECT_THAT(report.text, HasSubstr("The archive hub.tar does not exist."));
    EXPECT_EQ(report.identifier, "TAR_FILE_NOT_AVAILABLE");
}

TEST(Errors, RunThatFailedIsTheEvidence)
{
    Scene scene;
    scene.ran({"where", "wsl.exe"}, {0, "wsl.exe\r\n", {}});
    scene.ran({"wsl.exe", "--import", "hub"}, {-1, utf16("Fehlercode: Wsl/Service/WSL_E_IMPORT_FAILED\r\n"), "bsdtar"});
    const Report report = scene.reportOn(catalogueError<WSL_CANNOT_IMPORT_TAR_FILE>({"hub.tar", "x"}));
    ASSERT_TRUE(report.evidence.has_value());
    EXPECT_THAT(report.evidence->arguments, ElementsAre("wsl.exe", "--import", "hub"));
    EXPECT_EQ(report.evidence->status, -1);
    EXPECT_EQ(report.evidence->output, "Fehlercode: Wsl/Service/WSL_E_IMPORT_FAILED\n");
    EXPECT_EQ(report.evidence->error, "bsdtar");
    EXPECT_EQ(report.code, "Wsl/Service/WSL_E_IMPORT_FAILED");
}

TEST(Errors, CodePathOfWslDecidesCauseAndNextStep)
{
    Scene scene;
    scene.ran({"wsl.exe", "--import", "hub"},
              {-1, utf16("Fehler\r\nFehlercode: Wsl/Service/RegisterDistro/WSL_E_IMPORT_FAILED\r\n"), {}});
    const Report report = scene.reportOn(catalogueError<WSL_CANNOT_IMPORT_TAR_FILE>({"hub.tar", "x"}));
    ASSERT_TRUE(report.cause.has_value());
    EXPECT_EQ(report.cause->identifier, "WSL_ARCHIVE_BROKEN");
    EXPECT_EQ(report.nextStep, "Make room if little is left. \"kelpctl archive FILE\" tells whether the archive is "
                               "whole; copy it again if not.");
}

TEST(Errors, FailureOfWslWithoutACodeHasAStepToo)
{
    Scene scene;
    scene.ran({"wsl.exe", "--import", "hub"}, {-1, "?", {}});
    const Report report = scene.reportOn(catalogueError<WSL_CANNOT_IMPORT_TAR_FILE>({"hub.tar", "x"}));
    EXPECT_FALSE(report.cause.has_value());
    EXPECT_EQ(report.nextStep, "Run \"wsl --status\" and do what it says, then \"wsl --update\", and try again.");
}

TEST(Errors, WslThatIsNotInstalledIsToldByItsStatus)
{
    for (const std::int32_t status : {1, 50}) {
        Scene scene;
        scene.ran({"wsl.exe", "--list", "-q"}, {status, {}, "irgendetwas"});
        EXPECT_EQ(scene.reportOn(Failure("WSL_NOT_USABLE")).cause->identifier, "WSL_NOT_INSTALLED") << status;
    }
}

TEST(Errors, WslThatDoesNotExistIsTold)
{
    Scene scene;
    scene.ran({"C:\\wsl.exe", "--list", "-q"}, {127, {}, "cannot start C:\\wsl.exe\n"});
    EXPECT_EQ(scene.reportOn(Failure("WSL_NOT_USABLE")).cause->identifier, "WSL_NOT_FOUND");
}

TEST(Errors, CheckOfWslSpeaksOfWslUnderDockerToo)
{
    Docker scene;
    scene.ran({"wsl.exe", "--list", "-q"}, {-1, "Wsl/Service/E_UNEXPECTED", {}});
    EXPECT_EQ(scene.reportOn(Failure("WSL_NOT_USABLE")).cause->identifier, "WSL_SERVICE_BROKEN");
}

TEST(Errors, DockerEngineThatDoesNotAnswerIsTheCause)
{
    Docker scene;
    scene.ran({"docker.exe", "load", "-i", "hub.tar"}, {1, {}, "cannot connect"});
    const Report report = scene.reportOn(catalogueError<TAR_FILE_LOAD_ERROR>({"hub.tar", "hub", "cannot connect"}));
    EXPECT_EQ(report.cause->identifier, "DOCKER_ENGINE_NOT_REACHABLE");
    EXPECT_EQ(report.nextStep, "Start Docker; when \"docker version\" shows a server, try again.");
}

TEST(Errors, ArchiveIsToBlameWhenTheEngineAnswers)
{
    Docker scene;
    scene.answers(engineQuery, "{}");
    scene.ran({"docker.exe", "load", "-i", "hub.tar"}, {1, {}, "archive/tar: invalid tar header"});
    const Report report = scene.reportOn(catalogueError<TAR_FILE_LOAD_ERROR>({"hub.tar", "hub", "invalid"}));
    EXPECT_FALSE(report.cause.has_value());
    EXPECT_EQ(report.nextStep,
              "Name the right archive: \"kelpctl setup ARCHIVE\" takes an image that \"docker save\" wrote, \"kelpctl "
              "provision --archive ARCHIVE --root-fs --name kelp_hub_r1\" a root file system.");
}

TEST(Errors, MissingClientNeedsNoFurtherQuestion)
{
    Docker scene;
    scene.ran({"where", "docker.exe"}, {1, {}, "INFO: nothing\r\n"});
    const Report report = scene.reportOn(catalogueError<DOCKER_NOT_AVAILABLE>({}));
    EXPECT_FALSE(report.cause.has_value());
    EXPECT_THAT(report.evidence->arguments, ElementsAre("where", "docker.exe"));
}

struct Start {
    const char* name;
    std::int32_t status;
    // What the engine says of itself, the container and the image; empty when it does not.
    const char* engine;
    const char* container;
    const char* image;
    const char* cause;
};

void PrintTo(const Start& start, std::ostream* stream)
{
    *stream << start.name;
}

class FailedStart : public testing::TestWithParam<Start> {};

TEST_P(FailedStart, HasItsCause)
{
    Docker scene;
    const Start& start = GetParam();
    for (const auto& [question, text] :
         {std::pair{engineQuery, start.engine}, {containerQuery, start.container}, {imageQuestion, start.image}}) {
        if (*text != '\0') {
            scene.answers(question, text);
        }
    }
    scene.ran({"docker.exe", "run", "-di", "kelp_hub_R1"}, {start.status, {}, "x"});
    EXPECT_EQ(scene.reportOn(Failure("CONTAINER_NOT_STARTED")).cause->identifier, start.cause);
}

INSTANTIATE_TEST_SUITE_P(Errors, FailedStart,
                         testing::Values(Start{"engine", 125, "", "", "", "DOCKER_ENGINE_NOT_REACHABLE"},
                                         Start{"runs", 125, "{}", "running", "id", "CONTAINER_RUNS_ALREADY"},
                                         Start{"exists", 125, "{}", "exited", "id", "CONTAINER_EXISTS"},
                                         Start{"no image", 125, "{}", "", "", "IMAGE_MISSING"},
                                         Start{"paused", 125, "{}", "paused", "id", "CONTAINER_PAUSED"},
                                         Start{"refused", 125, "{}", "", "id", "DOCKER_REFUSED"},
                                         Start{"not executable", 126, "{}", "created", "id", "PROGRAM_NOT_EXECUTABLE"},
                                         Start{"not found", 127, "{}", "created", "id", "PROGRAM_NOT_FOUND"}));

TEST(Errors, ImageThatNamesNoProgramIsTheCause)
{
    Docker scene;
    scene.answers(engineQuery, "{}");
    scene.answers(imageQuestion, "id");
    scene.answers("docker.exe image inspect --format {{len .Config.Cmd}} {{len .Config.Entrypoint}} kelp_hub_r1",
                  "0 0\n");
    scene.ran({"docker.exe", "run", "-di", "kelp_hub_r1"}, {125, {}, "x"});
    EXPECT_EQ(scene.reportOn(Failure("CONTAINER_NOT_STARTED")).cause->identifier, "IMAGE_WITHOUT_PROGRAM");
}

TEST(Errors, NameThatDockerDoesNotAcceptIsTheCause)
{
    Docker scene;
    scene.request.name = "Hub";
    scene.ran({"docker.exe", "images"}, {0, {}, {}});
    EXPECT_EQ(scene.reportOn(catalogueError<IMAGE_NOT_EXIST>({"Hub"})).cause->identifier, "DOCKER_NAME_INVALID");
    scene.ran({"docker.exe", "run"}, {125, {}, "x"});
    EXPECT_EQ(scene.reportOn(Failure("CONTAINER_NOT_STARTED")).cause->identifier, "DOCKER_NAME_INVALID");
}

TEST(Errors, RunThatSucceededIsNoEvidence)
{
    Docker scene;
    scene.ran({"docker.exe", "images"}, {0, "other\n", {}});
    EXPECT_FALSE(scene.reportOn(catalogueError<TAR_FILE_NOT_AVAILABLE>({"hub.tar"})).evidence.has_value());
    EXPECT_TRUE(scene.reportOn(catalogueError<IMAGE_NOT_EXIST>({"hub"})).evidence.has_value()) << "the list tells";
}

TEST(Errors, ImageThatIsMissingIsExplainedByTheListAndNotByAnEarlierPull)
{
    Docker scene;
    scene.ran({"docker.exe", "pull", "-q", "kelp_hub_r1"}, {1, {}, "no such host"});
    scene.ran({"docker.exe", "load", "-i", "hub.tar"}, {0, {}, {}});
    scene.ran({"docker.exe", "images"}, {0, "other\n", {}});
    const Report report = scene.reportOn(catalogueError<IMAGE_NOT_EXIST>({"hub"}));
    ASSERT_TRUE(report.evidence.has_value());
    EXPECT_EQ(report.evidence->arguments.at(1), "images");
}

TEST(Errors, TemporaryFolderThatIsGoneIsTold)
{
    Scene scene;
    const Report report = scene.reportOn(std::filesystem::filesystem_error(
        "temp_directory_path", std::make_error_code(std::errc::no_such_file_or_directory)));
    EXPECT_EQ(report.identifier, "TEMPORARY_FOLDER_NOT_USABLE");
    EXPECT_THAT(report.nextStep, HasSubstr("TEMP"));
}

TEST(Errors, RunThatWasEndedForItsTimeIsAHang)
{
    Scene scene;
    RunJournal journal;
    journal.limitEachRun(std::chrono::milliseconds{0});
    orb::process::detail::RunOptions options;
    journal.starting({"wsl.exe", "--list"}, options);
    EXPECT_TRUE(journal.shouldTerminate());
    const RunResult result{137, {}, {}};
    journal.ended({"wsl.exe", "--list"}, &result);
    std::ostringstream stream;
    kelpctl::Console console{stream, stream};
    const Report report =
        reportOf(std::make_exception_ptr(Failure("WSL_NOT_USABLE")), {scene.request, console, {}, journal});
    EXPECT_EQ(report.cause->identifier, "TOOL_HANGS");
    EXPECT_THAT(report.cause->text, HasSubstr("wsl.exe"));
}

TEST(Errors, AdviceRepeatsTheFlagsThatLedHere)
{
    Docker scene;
    scene.request.backend = kelpctl::Backend::docker;
    scene.request.release = "R1";
    scene.request.root = "C:\\Program Files\\Host";
    scene.answers(engineQuery, "{}");
    scene.ran({"docker.exe", "run"}, {125, {}, {}});
    EXPECT_THAT(scene.reportOn(Failure("CONTAINER_NOT_STARTED")).nextStep,
                HasSubstr("kelpctl --docker --root \"C:\\Program Files\\Host\" --release R1 setup"));
}

TEST(Errors, EvidenceIsAllThatTheProgramPrinted)
{
    const std::string much(3U << 20U, 'x');
    Scene scene;
    scene.ran({"wsl.exe", "--list"}, {-1, much, much});
    const Report report = scene.reportOn(Failure("WSL_NOT_USABLE"));
    EXPECT_TRUE(report.evidence->output == much);
    EXPECT_TRUE(report.evidence->error == much);
}

TEST(Errors, EvidenceHidesSecrets)
{
    Scene scene;
    scene.request.environment = {{"TOKEN", "hush"}};
    scene.ran({"wsl.exe", "--push", "hush", "TOKEN=hush"}, {-1, "hush", "hush"});
    const Report report = scene.reportOn(Failure("WSL_NOT_USABLE"));
    EXPECT_THAT(report.evidence->arguments, ElementsAre("wsl.exe", "--push", "***", "TOKEN=***"))
        << "and the rest stays what it was";
    EXPECT_EQ(report.evidence->output, "***");
    EXPECT_EQ(report.evidence->error, "***");
}

struct Left {
    const char* verb;
    const char* cause;
};

void PrintTo(const Left& left, std::ostream* stream)
{
    *stream << left.verb;
}

class Interrupted : public testing::TestWithParam<Left> {};

TEST_P(Interrupted, TellsWhatMayBeLeft)
{
    Scene scene;
    scene.ran({"tool", GetParam().verb, "name", "C:\\Temp\\x", "archive"}, {1, {}, {}});
    const Report report = scene.reportOn(Failure("INTERRUPTED"));
    EXPECT_EQ(report.identifier, "INTERRUPTED");
    EXPECT_EQ(report.status, 130);
    ASSERT_TRUE(report.cause.has_value());
    EXPECT_EQ(report.cause->identifier, GetParam().cause);
    EXPECT_EQ(report.cause->text.find("{"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Errors, Interrupted,
                         testing::Values(Left{"--import", "IMPORT_LEFT"}, Left{"load", "IMAGE_LEFT"},
                                         Left{"import", "IMAGE_LEFT"}, Left{"pull", "IMAGE_LEFT"},
                                         Left{"run", "CONTAINER_LEFT"}, Left{"--unregister", "REMOVAL_LEFT"},
                                         Left{"image", "REMOVAL_LEFT"}, Left{"container", "REMOVAL_LEFT"}));

TEST(Errors, InterruptionOfAQuestionLeavesNothing)
{
    Scene scene;
    scene.ran({"wsl.exe", "--list", "-q"}, {1, {}, {}});
    const Report report = scene.reportOn(Failure("INTERRUPTED"));
    EXPECT_FALSE(report.cause.has_value());
    EXPECT_THAT(report.nextStep, HasSubstr("nothing was left behind"));
}

TEST(Errors, FolderOfAnInterruptedImportIsNamed)
{
    Scene scene;
    scene.ran({"wsl.exe", "--import", "hub", "C:\\Temp\\x", "archive"}, {1, {}, {}});
    EXPECT_THAT(scene.reportOn(Failure("INTERRUPTED")).cause->text, HasSubstr("C:\\Temp\\x"));
}

TEST(Errors, StatusIsWrittenWithAllItsBits)
{
    EXPECT_EQ(kelpctl::hexadecimal(-1), "0xFFFFFFFF");
    EXPECT_EQ(kelpctl::hexadecimal(0), "0x00000000");
    EXPECT_EQ(kelpctl::hexadecimal(125), "0x0000007D");
}

TEST(Errors, WrongUsageHasAStatusOfItsOwn)
{
    Scene scene;
    const Report report = scene.reportOn(kelpctl::UsageError("setup", "Too much"));
    EXPECT_EQ(report.identifier, "USAGE");
    EXPECT_EQ(report.text, "Too much");
    EXPECT_EQ(report.nextStep, "Run \"kelpctl setup --help\".");
    EXPECT_EQ(report.status, 2);
}

TEST(Errors, WrongUsageOfNoCommandLeadsToTheWholeHelp)
{
    Scene scene;
    EXPECT_EQ(scene.reportOn(kelpctl::UsageError("", "What?")).nextStep, "Run \"kelpctl --help\".");
}

TEST(Errors, ProgramThatCannotBeStartedIsNamed)
{
    Scene scene;
    const Report report = scene.reportOn(std::system_error(ENOENT, std::generic_category(), "where"));
    EXPECT_EQ(report.identifier, "PROGRAM_NOT_STARTED");
    EXPECT_THAT(report.text, HasSubstr("where"));
}

struct Other {
    std::exception_ptr error;
    const char* identifier;
    const char* text;
    const char* nextStep;
};

void PrintTo(const Other& other, std::ostream* stream)
{
    *stream << other.identifier << " " << other.text;
}

class OtherError : public testing::TestWithParam<Other> {};

TEST_P(OtherError, HasAnIdentifierOfItsOwn)
{
    Scene scene;
    const Report report = scene.report(GetParam().error);
    EXPECT_EQ(report.identifier, GetParam().identifier);
    EXPECT_THAT(report.text, HasSubstr(GetParam().text));
    EXPECT_EQ(report.nextStep, GetParam().nextStep);
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

constexpr char sendOutput[] = "Run the same command with --log detail and send its output to support.";

INSTANTIATE_TEST_SUITE_P(
    Errors, OtherError,
    testing::Values(Other{textError(), "TEXT_NOT_VALID", "not UTF-8", "Write paths and names in UTF-8."},
                    Other{fileError(), "FILE_NOT_ACCESSIBLE", "some_file",
                          "Check that the path named above exists and that you may read it."},
                    Other{std::make_exception_ptr(std::invalid_argument("bad")), "INVALID_ARGUMENT", "bad",
                          "Check the names and paths of the command line."},
                    Other{std::make_exception_ptr(std::bad_alloc()), "OUT_OF_MEMORY", "memory",
                          "Close other programs and try again."},
                    Other{std::make_exception_ptr(std::runtime_error("odd")), "UNEXPECTED_ERROR", "odd", sendOutput},
                    Other{std::make_exception_ptr(7), "UNEXPECTED_ERROR", "unknown", sendOutput}));

} // namespace
