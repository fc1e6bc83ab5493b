#include "names.h"

#include "host/text.h"

#include <algorithm>
#include <functional>

namespace verify {

namespace {

char lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isWordLetter(char letter)
{
    const char small = lower(letter);
    return (small >= 'a' && small <= 'z') || (small >= '0' && small <= '9') || small == '_';
}

using Accepts = std::function<bool(std::string_view text, std::size_t begin, std::size_t end)>;

bool anywhere(std::string_view /*text*/, std::size_t /*begin*/, std::size_t /*end*/)
{
    return true;
}

bool asWord(std::string_view text, std::size_t begin, std::size_t end)
{
    return (begin == 0 || !isWordLetter(text[begin - 1])) && (end == text.size() || !isWordLetter(text[end]));
}

void replaceAll(std::string& text, std::string_view from, std::string_view to, const Accepts& accepts)
{
    const auto same = [](char one, char other) { return lower(one) == lower(other); };
    for (std::size_t place = 0; !from.empty();) {
        const auto found =
            std::search(text.begin() + static_cast<std::ptrdiff_t>(place), text.end(), from.begin(), from.end(), same);
        if (found == text.end()) {
            return;
        }
        const auto begin = static_cast<std::size_t>(found - text.begin());
        if (accepts(text, begin, begin + from.size())) {
            text.replace(begin, from.size(), to);
            place = begin + to.size();
        } else {
            place = begin + 1;
        }
    }
}

std::string inUtf16(const std::string& text)
{
    std::string bytes;
    for (const char16_t unit : foundation::core::text::cvt_utf8_ustring(text)) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

std::string forExpression(const std::string& text)
{
    constexpr std::string_view special = R"(\^$.|?*+()[]{})";
    std::string expression;
    for (const char letter : text) {
        expression += (special.find(letter) == std::string_view::npos ? "" : "\\") + std::string(1, letter);
    }
    return expression;
}

} // namespace

void Names::set(const std::string& placeholder, const std::string& value)
{
    std::erase_if(values_, [&](const auto& each) { return each.first == placeholder; });
    values_.insert(values_.begin(), {placeholder, value});
}

std::string Names::get(std::string_view placeholder) const
{
    const auto found =
        std::find_if(values_.begin(), values_.end(), [&](const auto& each) { return each.first == placeholder; });
    return found == values_.end() ? std::string() : found->second;
}

// One letter would be found in everything, and some names are nobody's.
void Names::hideWord(const std::string& placeholder, const std::string& word)
{
    constexpr std::size_t shortest = 2;
    for (const std::string_view nobodys : {"root", "user", "admin", "administrator", "runneradmin"}) {
        std::string small = word;
        std::transform(small.begin(), small.end(), small.begin(), lower);
        if (small == nobodys) {
            return;
        }
    }
    if (word.size() >= shortest) {
        words_.emplace_back(placeholder, word);
    }
}

std::string Names::filled(std::string text) const
{
    for (const auto& [placeholder, value] : values_) {
        replaceAll(text, placeholder, value,
                   [&placeholder = placeholder](std::string_view whole, std::size_t begin, std::size_t end) {
                       return whole.substr(begin, end - begin) == placeholder;
                   });
    }
    return text;
}

std::string Names::filledExpression(std::string text) const
{
    Names escaped;
    for (const auto& [placeholder, value] : values_) {
        escaped.set(placeholder, forExpression(value));
    }
    return escaped.filled(std::move(text));
}

std::string Names::hidden(std::string text) const
{
    for (const auto& [placeholder, value] : values_) {
        replaceAll(text, value, placeholder, anywhere);
    }
    for (const auto& [placeholder, word] : words_) {
        replaceAll(text, word, placeholder, asWord);
    }
    return text;
}

std::string Names::hiddenInBytes(std::string bytes) const
{
    bytes = hidden(std::move(bytes));
    for (const auto& all : {values_, words_}) {
        for (const auto& [placeholder, value] : all) {
            replaceAll(bytes, inUtf16(value), inUtf16(placeholder), anywhere);
        }
    }
    return bytes;
}

} // namespace verify
