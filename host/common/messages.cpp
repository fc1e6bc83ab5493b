#include "host/messages.h"

#include "host/configuration.h"
#include "host/install.h"
#include "host/text.h"

#include <boost/json/parse.hpp>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

namespace foundation::core::message {
namespace {

struct Entry {
    const char* catalogue;
    const char* identifier;
    const char* english;
};

constexpr std::array<Entry, 5> entries{{
    {"orb:container_support", "DOCKER_NOT_AVAILABLE",
     "The Docker client docker.exe was not found on the search path. Install Docker, or unset USE_WSL to use WSL."},
    {"orb:container_support", "IMAGE_NOT_EXIST",
     "The Docker image {1} is still missing after it was pulled, loaded or imported. The archive may hold an image of "
     "another name."},
    {"orb:container_support", "TAR_FILE_LOAD_ERROR",
     "Docker could not load the archive {1} as the image {2}. The Docker client reported: {3}"},
    {"orb:container_support", "TAR_FILE_NOT_AVAILABLE", "The archive {1} does not exist."},
    {"orb:container_support", "WSL_CANNOT_IMPORT_TAR_FILE",
     "WSL could not import the archive {1}. wsl.exe reported:\n{2}"},
}};

std::optional<std::string> builtInText(const Message& message)
{
    for (const Entry& entry : entries) {
        if (message.catalogue == entry.catalogue && message.identifier == entry.identifier) {
            return entry.english;
        }
    }
    return std::nullopt;
}

std::string placeholder(std::size_t index)
{
    return {'{', static_cast<char>('1' + index), '}'};
}

// Without a text of its own, a message is its identifier and its arguments.
std::string bareText(const Message& message)
{
    std::string text = message.identifier;
    for (std::size_t index = 0; index < message.arguments.size(); ++index) {
        text += (index == 0 ? ": " : ", ") + placeholder(index);
    }
    return text;
}

// Replaces each placeholder in one pass, so that braces inside an argument stay what they are.
std::string fill(std::string_view text, const std::vector<Argument>& arguments)
{
    std::string result;
    for (std::size_t position = 0; position < text.size(); ++position) {
        const bool isPlaceholder = position + 2 < text.size() && text[position] == '{' && text[position + 2] == '}' &&
                                   text[position + 1] >= '1' && text[position + 1] <= '9';
        const std::size_t index = isPlaceholder ? static_cast<std::size_t>(text[position + 1] - '1') : 0;
        if (isPlaceholder && index < arguments.size()) {
            result += text::readable(arguments[index].text());
            position += 2;
        } else {
            result += text[position];
        }
    }
    return result;
}

bool hasPlaceholdersOf(const std::string& english, const std::string& text)
{
    constexpr std::size_t most = 9;
    for (std::size_t index = 0; index < most; ++index) {
        const std::string wanted = placeholder(index);
        if (english.find(wanted) != std::string::npos && text.find(wanted) == std::string::npos) {
            return false;
        }
    }
    return true;
}

std::string ownEnglish(const Message& message)
{
    return builtInText(message).value_or(bareText(message));
}

bool isLanguageCode(const std::string& language)
{
    return !language.empty() && std::all_of(language.begin(), language.end(), [](char character) {
        return (character >= 'a' && character <= 'z') || character == '-';
    });
}

std::filesystem::path translationFile(const std::string& catalogue, const std::string& language)
{
    std::string name = catalogue;
    std::replace(name.begin(), name.end(), ':', '_');
    return std::filesystem::path(path::get_install_path().text) / "resources" / (name + "." + language + ".json");
}

// Windows programs like to put it in front of UTF-8.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

boost::json::value parsed(std::string_view text)
{
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    boost::system::error_code error;
    boost::json::value value = boost::json::parse(text, error);
    return error ? nullptr : value;
}

// Identifiers to texts, or anything else when there is no such file, or it is broken.
boost::json::value translation(const std::string& catalogue, const std::string& language)
{
    if (!isLanguageCode(language)) {
        return nullptr;
    }
    try {
        std::ifstream file(translationFile(catalogue, language), std::ios::binary);
        return parsed(std::string(std::istreambuf_iterator<char>(file), {}));
    } catch (const std::system_error&) {
        // The installation root is no text, so there is no file.
        return nullptr;
    }
}

std::optional<std::string> translatedText(const Message& message, const std::string& english)
{
    const boost::json::value texts = translation(message.catalogue, config::configuration().language());
    const boost::json::object* object = texts.if_object();
    const boost::json::value* entry = object != nullptr ? object->if_contains(message.identifier) : nullptr;
    if (entry == nullptr || !entry->is_string()) {
        return std::nullopt;
    }
    std::string text(entry->get_string());
    return hasPlaceholdersOf(english, text) ? std::optional(text) : std::nullopt;
}

} // namespace

std::string localisedText(const Message& message)
{
    return localisedText(message, ownEnglish(message));
}

std::string localisedText(const Message& message, const std::string& english)
{
    return fill(translatedText(message, english).value_or(english), message.arguments);
}

std::string englishText(const Message& message)
{
    return fill(ownEnglish(message), message.arguments);
}

bool hasLanguage(const std::string& catalogue, const std::string& language)
{
    return language.empty() || language == "en" || translation(catalogue, language).is_object();
}

} // namespace foundation::core::message
