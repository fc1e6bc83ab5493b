// The translations that are shipped.
#include "failure/advice.h"

#include "host/configuration.h"
#include "host/messages.h"

#include <boost/json/parse.hpp>
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using kelpctl::Advice;
using kelpctl::allAdvice;

// Language to texts, of one catalogue. Throws when a file is broken.
std::map<std::string, boost::json::object> translations(const std::string& catalogue)
{
    std::map<std::string, boost::json::object> all;
    for (const auto& entry : std::filesystem::directory_iterator(RESOURCES)) {
        const std::string name = entry.path().filename().string();
        const std::string end = ".json";
        if (name.starts_with(catalogue + ".") && name.ends_with(end)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::size_t start = catalogue.size() + 1;
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            all[name.substr(start, name.size() - start - end.size())] = boost::json::parse(content).as_object();
        }
    }
    return all;
}

std::string textOf(const boost::json::value& value)
{
    return std::string(value.as_string());
}

// "{1}" and so on, each once.
std::set<std::string> placeholders(const std::string& text)
{
    std::set<std::string> found;
    for (char digit = '1'; digit <= '9'; ++digit) {
        const std::string placeholder = {'{', digit, '}'};
        if (text.find(placeholder) != std::string::npos) {
            found.insert(placeholder);
        }
    }
    return found;
}

std::map<std::string, std::string> englishAdvice()
{
    std::map<std::string, std::string> texts;
    for (const Advice& advice : allAdvice) {
        if (*advice.text != '\0') {
            texts[advice.key] = advice.text;
        }
        texts[std::string(advice.key) + ".next"] = advice.nextStep;
    }
    return texts;
}

// Identifier to the number of arguments.
const std::map<std::string, int>& catalogueErrors()
{
    static const std::map<std::string, int> errors = {{"DOCKER_NOT_AVAILABLE", 0},
                                                      {"IMAGE_NOT_EXIST", 1},
                                                      {"TAR_FILE_LOAD_ERROR", 3},
                                                      {"TAR_FILE_NOT_AVAILABLE", 1},
                                                      {"WSL_CANNOT_IMPORT_TAR_FILE", 2}};
    return errors;
}

std::set<std::string> languages(const std::string& catalogue)
{
    std::set<std::string> codes;
    for (const auto& [language, texts] : translations(catalogue)) {
        codes.insert(language);
    }
    return codes;
}

TEST(Translations, BothCataloguesHaveTheSameLanguagesGermanAmongThem)
{
    EXPECT_THAT(languages("kelpctl"), testing::Contains("de"));
    EXPECT_EQ(languages("kelpctl"), languages("orb_container_support"));
}

TEST(Translations, EachEntryOfKelpctlIsThereWithAllItsPlaceholders)
{
    const std::map<std::string, std::string> english = englishAdvice();
    for (const auto& [language, texts] : translations("kelpctl")) {
        for (const auto& [key, text] : english) {
            ASSERT_TRUE(texts.contains(key)) << language << ": " << key << " is missing";
            EXPECT_EQ(placeholders(textOf(texts.at(key))), placeholders(text)) << language << ": " << key;
        }
        for (const auto& [key, text] : texts) {
            EXPECT_TRUE(english.contains(std::string(key))) << language << ": " << key << " is of no use";
        }
    }
}

TEST(Translations, EachErrorOfTheHostIsThereWithAllItsPlaceholders)
{
    for (const auto& [language, texts] : translations("orb_container_support")) {
        EXPECT_EQ(texts.size(), catalogueErrors().size()) << language;
        for (const auto& [identifier, count] : catalogueErrors()) {
            ASSERT_TRUE(texts.contains(identifier)) << language << ": " << identifier << " is missing";
            EXPECT_EQ(placeholders(textOf(texts.at(identifier))).size(), static_cast<std::size_t>(count))
                << language << ": " << identifier;
        }
    }
}

TEST(Translations, NoTextIsJustTheEnglishOne)
{
    const std::map<std::string, std::string> english = englishAdvice();
    for (const auto& [language, texts] : translations("kelpctl")) {
        for (const auto& [key, text] : english) {
            if (text != "{4}" && texts.contains(key)) {
                EXPECT_NE(textOf(texts.at(key)), text) << language << ": " << key;
            }
        }
    }
}

bool hasOneOf(const std::string& text, const std::vector<std::string>& parts)
{
    return std::any_of(parts.begin(), parts.end(),
                       [&text](const std::string& part) { return text.find(part) != std::string::npos; });
}

// By a command, which is the same in all languages, or in the words of the languages that are here.
bool tellsToRemoveADistribution(const std::string& text)
{
    return hasOneOf(text, {"teardown", "unregister", "{1} remove"}) ||
           (hasOneOf(text, {"istribution"}) && hasOneOf(text, {"emove", "elete", "ntfern", "ösch"}));
}

// It may hold what nobody can bring back; only one whose disk is gone holds nothing.
TEST(Translations, NothingAdvisesToRemoveADistributionUnlessItsDiskIsGone)
{
    std::map<std::string, std::map<std::string, std::string>> languages = {{"en", englishAdvice()}};
    for (const auto& [language, texts] : translations("kelpctl")) {
        for (const auto& [key, text] : texts) {
            languages[language][std::string(key)] = textOf(text);
        }
    }
    // The first is about an image of Docker.
    const std::set<std::string> allowed = {"IMAGE_LEFT.next", "DISK_GONE.next"};
    for (const auto& [language, texts] : languages) {
        for (const auto& [key, text] : texts) {
            if (key.ends_with(".next")) {
                EXPECT_EQ(tellsToRemoveADistribution(text), allowed.contains(key))
                    << language << ": " << key << ": " << text;
            }
        }
    }
}

TEST(Translations, UserGetsThemFromTheInstalledTree)
{
    foundation::core::config::Configuration configuration;
    configuration.setInstallationRoot(std::filesystem::path(RESOURCES).parent_path().string());
    configuration.setLanguage("de");
    foundation::core::config::configure(configuration);
    const kelpctl::Names names{"kelpctl", "hub", "box", {}};
    EXPECT_EQ(adviceText(kelpctl::adviceFor("DISTRIBUTION_MISSING"), names), "Es gibt keine Distribution hub.");
    EXPECT_THAT(adviceNextStep(kelpctl::adviceFor("DISTRIBUTION_MISSING"), names),
                testing::StartsWith("Legen Sie sie mit \"kelpctl setup\" an."));
    EXPECT_TRUE(kelpctl::hasCatalogue("de"));
    EXPECT_FALSE(kelpctl::hasCatalogue("xx"));
    EXPECT_TRUE(kelpctl::hasCatalogue("en"));
}

} // namespace
