// What counts as a language: a code of small letters and hyphens, whatever files there are.
#include "host/configuration.h"
#include "host/messages.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace foundation::core;

constexpr char catalogue[] = "my:catalogue";

// A tree that has a translation under any name that the file system takes.
class Tree {
public:
    Tree() { std::filesystem::create_directories(folder_.path() / "resources" / "my_catalogue.x"); }

    void translateAs(const std::string& language) const
    {
        std::ofstream(folder_.path() / "resources" / ("my_catalogue." + language + ".json"))
            << R"({"GREETING": "Hallo"})";
    }

    std::string greetingIn(const std::string& language) const
    {
        config::Configuration configuration;
        const std::u8string root = folder_.path().u8string();
        configuration.setInstallationRoot(std::string(root.begin(), root.end()));
        configuration.setLanguage(language);
        config::configure(configuration);
        return message::localisedText({catalogue, "GREETING", {}}, "Hello");
    }

private:
    TemporaryFolder folder_;
};

TEST(LanguageCodes, AreMadeOfSmallLettersAndHyphensOnly)
{
    const Tree tree;
    for (int code = 1; code < 128; ++code) {
        const char character = static_cast<char>(code);
        const bool belongs = (character >= 'a' && character <= 'z') || character == '-';
        for (const std::string& language :
             {std::string("xx") + character, character + std::string("xx"), std::string("x") + character + "x"}) {
            // Where capital letters name the same file there is one for each of them.
            tree.translateAs(language);
            EXPECT_EQ(tree.greetingIn(language), belongs ? "Hallo" : "Hello") << code;
            EXPECT_EQ(message::hasLanguage(catalogue, language), belongs) << code;
        }
    }
}

TEST(LanguageCodes, NeverLeadOutOfTheirPlace)
{
    const Tree tree;
    tree.translateAs("xx");
    ASSERT_EQ(tree.greetingIn("xx"), "Hallo");
    for (const char* language : {"x/../my_catalogue.xx", "x\\..\\my_catalogue.xx", "../my_catalogue.xx", "./xx", ".",
                                 "..", "xx.json", "xx ", " xx", "\xC3\xA4", "xx\n"}) {
        EXPECT_EQ(tree.greetingIn(language), "Hello") << language;
    }
}

} // namespace
