#include "host/configuration.h"
#include "host/exceptions.h"
#include "host/messages.h"
#include "host/text.h"

#include "temporary_folder.h"

#include <boost/exception/diagnostic_information.hpp>
#include <boost/exception/error_info.hpp>
#include <boost/exception/get_error_info.hpp>
#include <boost/exception/info.hpp>
#include <boost/exception_ptr.hpp>
#include <gtest/gtest.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace foundation::core;
using message::Message;

constexpr char catalogue[] = "orb:container_support";

void useLanguage(const std::filesystem::path& root, const std::string& language)
{
    config::Configuration configuration;
    configuration.setInstallationRoot(text::cvt_ustring_utf8(root.u16string()));
    configuration.setLanguage(language);
    config::configure(configuration);
}

struct Translation {
    explicit Translation(const std::string& content)
    {
        std::filesystem::create_directories(folder.path() / "resources");
        std::ofstream(folder.path() / "resources" / "orb_container_support.xx.json", std::ios::binary) << content;
        useLanguage(folder.path(), "xx");
    }
    TemporaryFolder folder;
};

TEST(Messages, EachOfTheFiveErrorsShowsItsArguments)
{
    const std::vector<Message> messages = {
        {catalogue, "DOCKER_NOT_AVAILABLE", {}},
        {catalogue, "IMAGE_NOT_EXIST", {std::string("first-argument")}},
        {catalogue,
         "TAR_FILE_LOAD_ERROR",
         {std::string("first-argument"), std::string("second-argument"), std::string("third-argument")}},
        {catalogue, "TAR_FILE_NOT_AVAILABLE", {std::string("first-argument")}},
        {catalogue, "WSL_CANNOT_IMPORT_TAR_FILE", {std::string("first-argument"), std::string("second-argument")}},
    };
    for (const Message& message : messages) {
        const std::string text = message::englishText(message);
        EXPECT_EQ(text.find(message.identifier), std::string::npos) << "a text of its own: " << text;
        EXPECT_EQ(text.find('{'), std::string::npos) << text;
        for (const message::Argument& argument : message.arguments) {
            EXPECT_NE(text.find(argument.text()), std::string::npos) << text;
        }
    }
}

TEST(Messages, AnUnknownIdentifierStillSaysWhatItKnows)
{
    EXPECT_EQ(message::englishText({catalogue, "UNKNOWN", {std::string("a"), std::string("b")}}), "UNKNOWN: a, b");
    EXPECT_EQ(message::englishText({"other", "IMAGE_NOT_EXIST", {}}), "IMAGE_NOT_EXIST");
}

TEST(Messages, BracesInsideAnArgumentStayWhatTheyAre)
{
    const Message message{catalogue, "UNKNOWN", {std::string("{2}"), std::string("{1}{x}")}};
    EXPECT_EQ(message::englishText(message), "UNKNOWN: {2}, {1}{x}");
}

TEST(Messages, WhatIsNoPlaceholderStaysWhatItIs)
{
    const Translation translation(R"({"IMAGE_NOT_EXIST": "{1} {0} {:} {2} {a {1 {{1}"})");
    EXPECT_EQ(message::localisedText({catalogue, "IMAGE_NOT_EXIST", {std::string("i")}}), "i {0} {:} {2} {a {1 {i");
}

TEST(Messages, ArgumentsAreMadeReadable)
{
    const Message message{catalogue, "UNKNOWN", {std::string("N\0o\0\r\0\n\0", 8)}};
    EXPECT_EQ(message::englishText(message), "UNKNOWN: No\n");
}

TEST(Messages, ATranslationIsUsed)
{
    const Translation translation(R"({"IMAGE_NOT_EXIST": "Es fehlt: {1}, é"})");
    EXPECT_EQ(message::localisedText({catalogue, "IMAGE_NOT_EXIST", {std::string("hub")}}), "Es fehlt: hub, é");
}

TEST(Messages, WhatATranslationLacksFallsBackToEnglish)
{
    const Translation translation(R"({"IMAGE_NOT_EXIST": "ohne Platzhalter", "TAR_FILE_NOT_AVAILABLE": 5})");
    for (const char* identifier : {"IMAGE_NOT_EXIST", "TAR_FILE_NOT_AVAILABLE", "WSL_CANNOT_IMPORT_TAR_FILE"}) {
        const Message message{catalogue, identifier, {std::string("a"), std::string("b")}};
        EXPECT_EQ(message::localisedText(message), message::englishText(message));
    }
}

TEST(Messages, ABrokenOrMissingTranslationFallsBackToEnglish)
{
    const Message message{catalogue, "IMAGE_NOT_EXIST", {std::string("hub")}};
    for (const char* broken : {"", "{", "[]", "\xff\xfe", "{\"IMAGE_NOT_EXIST\": \"\xff {1}\"}"}) {
        const Translation translation(broken);
        EXPECT_EQ(message::localisedText(message), message::englishText(message)) << broken;
    }
    const TemporaryFolder empty;
    useLanguage(empty.path(), "xx");
    EXPECT_EQ(message::localisedText(message), message::englishText(message));
}

TEST(Messages, ATranslationMayBeginWithAByteOrderMark)
{
    const Message message{catalogue, "IMAGE_NOT_EXIST", {std::string("hub")}};
    const Translation translation("\xEF\xBB\xBF{\"IMAGE_NOT_EXIST\": \"{1} !\"}");
    EXPECT_EQ(message::localisedText(message), "hub !");
    for (const char* broken : {"\xEF\xBB\xBF", "\xEF\xBB{\"IMAGE_NOT_EXIST\": \"{1} !\"}",
                               "\xEF\xBB\xBF\xEF\xBB\xBF{\"IMAGE_NOT_EXIST\": \"{1} !\"}"}) {
        const Translation other(broken);
        EXPECT_EQ(message::localisedText(message), message::englishText(message)) << broken;
    }
}

TEST(Messages, OfTwoTextsTheLastCounts)
{
    const Translation translation(R"({"IMAGE_NOT_EXIST": "{1} first", "IMAGE_NOT_EXIST": "{1} last"})");
    EXPECT_EQ(message::localisedText({catalogue, "IMAGE_NOT_EXIST", {std::string("hub")}}), "hub last");
}

TEST(Messages, ATranslationOfManyLevelsIsRefusedWithoutACrash)
{
    const Message message{catalogue, "IMAGE_NOT_EXIST", {std::string("hub")}};
    const std::string open(1'000'000, '[');
    const std::string close(1'000'000, ']');
    for (const std::string& deep : {open, open + close, "{\"x\": " + open + close + "}"}) {
        const Translation translation(deep);
        EXPECT_EQ(message::localisedText(message), message::englishText(message));
    }
}

TEST(Messages, ALanguageIsACodeAndNeverAPath)
{
    const Translation translation(R"({"IMAGE_NOT_EXIST": "{1} !"})");
    useLanguage(translation.folder.path(), "../resources/orb_container_support.xx");
    const Message message{catalogue, "IMAGE_NOT_EXIST", {std::string("hub")}};
    EXPECT_EQ(message::localisedText(message), message::englishText(message));
    std::ofstream(translation.folder.path() / "resources" / "orb_container_support.x{.json")
        << R"({"IMAGE_NOT_EXIST": "{1} !"})";
    useLanguage(translation.folder.path(), "x{");
    EXPECT_EQ(message::localisedText(message), message::englishText(message));
    std::ofstream(translation.folder.path() / "resources" / "orb_container_support.x-y.json")
        << R"({"IMAGE_NOT_EXIST": "{1} ?"})";
    useLanguage(translation.folder.path(), "x-y");
    EXPECT_EQ(message::localisedText(message), "hub ?") << "a hyphen belongs to codes";
}

struct TAG {};
using TestException = except::Exception<TAG, std::exception, void>;

TestException testException()
{
    return TestException({catalogue, "TAR_FILE_NOT_AVAILABLE", {std::string("C:\\a.tar")}});
}

TEST(Exceptions, WhatHoldsTheIdentifierAndTheEnglishText)
{
    const TestException exception = testException();
    const std::string expected = "orb:container_support:TAR_FILE_NOT_AVAILABLE: The archive C:\\a.tar does not exist.";
    EXPECT_EQ(exception.what(), expected);
    EXPECT_EQ(exception.description(), expected);
}

TEST(Exceptions, AHandlerMayCatchAnyBase)
{
    EXPECT_THROW(throw testException(), except::IMsgIDException);
    EXPECT_THROW(throw testException(), except::IUserException);
    EXPECT_THROW(throw testException(), except::IException);
    EXPECT_THROW(throw testException(), boost::exception_detail::clone_base);
    EXPECT_THROW(throw testException(), boost::exception);
    EXPECT_THROW(throw testException(), std::exception);
}

TEST(Exceptions, CloneAndRethrowKeepTheExactType)
{
    const TestException exception = testException();
    const std::unique_ptr<const boost::exception_detail::clone_base> copy(exception.clone());
    try {
        copy->rethrow();
        FAIL();
    } catch (const TestException& rethrown) {
        EXPECT_EQ(rethrown.message().identifier, "TAR_FILE_NOT_AVAILABLE");
        EXPECT_EQ(rethrown.message().arguments.at(0).text(), "C:\\a.tar");
    }
}

TEST(Exceptions, BoostCarriesThemBetweenThreads)
{
    boost::exception_ptr carried;
    try {
        throw testException();
    } catch (...) {
        carried = boost::current_exception();
    }
    EXPECT_THROW(boost::rethrow_exception(carried), TestException);
}

using Remark = boost::error_info<struct RemarkTag, std::string>;

TEST(Exceptions, ACloneHasErrorInfosOfItsOwn)
{
    const TestException exception = testException();
    exception << Remark("before");
    const std::unique_ptr<const boost::exception_detail::clone_base> copy(exception.clone());
    exception << Remark("after");
    try {
        copy->rethrow();
        FAIL();
    } catch (const TestException& rethrown) {
        ASSERT_NE(boost::get_error_info<Remark>(rethrown), nullptr);
        EXPECT_EQ(*boost::get_error_info<Remark>(rethrown), "before");
        rethrown << Remark("later");
    }
    EXPECT_EQ(*boost::get_error_info<Remark>(dynamic_cast<const TestException&>(*copy)), "before");
}

// The thread sanitizer is the judge.
TEST(Exceptions, AreHandledOnSeveralThreadsAtOnce)
{
    boost::exception_ptr carried;
    try {
        throw testException() << Remark("text");
    } catch (...) {
        carried = boost::current_exception();
    }
    const auto handle = [&carried] {
        for (int round = 0; round < 1000; ++round) {
            try {
                boost::rethrow_exception(carried);
            } catch (const TestException& error) {
                ASSERT_EQ(*boost::get_error_info<Remark>(error), "text");
            }
        }
    };
    std::thread first(handle);
    std::thread second(handle);
    first.join();
    second.join();
}

TEST(OwnCatalogue, BringsItsEnglishAlong)
{
    const Message message{"my:catalogue", "GREETING", {std::string("World")}};
    EXPECT_EQ(message::localisedText(message, "Hello {1}"), "Hello World");
}

TEST(OwnCatalogue, MayBeTranslated)
{
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path() / "resources");
    std::ofstream(folder.path() / "resources" / "my_catalogue.xx.json")
        << R"({"GREETING": "Hallo {1}", "INCOMPLETE": "Hallo"})";
    useLanguage(folder.path(), "xx");
    EXPECT_EQ(message::localisedText({"my:catalogue", "GREETING", {std::string("Welt")}}, "Hello {1}"), "Hallo Welt");
    EXPECT_EQ(message::localisedText({"my:catalogue", "INCOMPLETE", {std::string("Welt")}}, "Hello {1}"), "Hello Welt");
    EXPECT_EQ(message::localisedText({"my:catalogue", "MISSING", {std::string("Welt")}}, "Hello {1}"), "Hello Welt");
}

TEST(OwnCatalogue, TranslationNeedsOnlyThePlaceholdersThatTheEnglishHas)
{
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path() / "resources");
    std::ofstream(folder.path() / "resources" / "my_catalogue.xx.json") << R"({"SECOND": "Zweitens {2}"})";
    useLanguage(folder.path(), "xx");
    EXPECT_EQ(message::localisedText({"my:catalogue", "SECOND", {std::string("a"), std::string("b")}}, "Second {2}"),
              "Zweitens b");
}

TEST(Languages, AreThoseThatHaveAFile)
{
    const Translation translation("{}");
    EXPECT_TRUE(message::hasLanguage(catalogue, "xx"));
    EXPECT_TRUE(message::hasLanguage(catalogue, "en"));
    EXPECT_TRUE(message::hasLanguage(catalogue, ""));
    EXPECT_FALSE(message::hasLanguage(catalogue, "yy"));
    EXPECT_FALSE(message::hasLanguage(catalogue, "../xx"));
    EXPECT_FALSE(message::hasLanguage("other", "xx"));
}

TEST(Languages, FileThatIsBrokenIsNone)
{
    const Translation translation("{");
    EXPECT_FALSE(message::hasLanguage(catalogue, "xx"));
}

TEST(Messages, RootThatIsNoTextLeavesEnglish)
{
    config::Configuration configuration;
    configuration.setInstallationRoot("\xFF");
    configuration.setLanguage("xx");
    config::configure(configuration);
    EXPECT_NE(message::localisedText({catalogue, "TAR_FILE_NOT_AVAILABLE", {std::string("a")}}).find("does not exist"),
              std::string::npos);
}

} // namespace
