#include "generator.h"

#include <algorithm>
#include <cctype>

namespace {

// What is written without blanks, and what is not.
constexpr char words[] = R"--(
a A b Z 0 1 9 _ - -- . .. / // \ \ : ; , = + * ? ! # ~ @ & | < > ^ % $ ` ' " ( ) [ ] { } {{.ID}} name Name NAME true
null kelp_hub kelp_hub_R9 _R9 latest <none> docker-desktop docker.exe wsl.exe bin\win64 Bin\Win64 bin/win64 /c/ /d/ C:\ c:
/opt/vrun/korvane/bin/plat64 PATH LD_LIBRARY_PATH WSLENV -e -d --exec --name= zqkelp/ ancestor= Error warning:
Wsl/Service/ERROR_ALREADY_EXISTS WSL_E_DISTRO_NOT_FOUND denied)--";
const std::vector<std::string> others = {" ",
                                         "  ",
                                         "\t",
                                         "\n",
                                         "\r\n",
                                         "\r",
                                         "\v",
                                         "\f",
                                         "\x01",
                                         "\x1B[0m",
                                         "\x7F",
                                         "\xC2\xA0",
                                         "\xC3\xA4",
                                         "\xC3\x9F",
                                         "\xD0\x96",
                                         "\xE6\x97\xA5",
                                         "\xE2\x80\x8F",
                                         "\xEF\xBB\xBF",
                                         "\xF0\x9F\x98\x80",
                                         "not found",
                                         "Program Files",
                                         "already exists",
                                         "No such image",
                                         "There is no distribution",
                                         "is already in use"};

// More than any piece of memory that somebody might think enough.
constexpr std::size_t hugeSize = 3 << 20;

constexpr char blankCharacters[] = " \t\n\v\f\r";

} // namespace

std::size_t Generator::below(std::size_t limit)
{
    return static_cast<std::size_t>(random_() % limit);
}

bool Generator::oneIn(std::size_t count)
{
    return below(count) == 0;
}

std::string Generator::text()
{
    static const std::vector<std::string> known = wordsOf(words);
    std::size_t length = 1 + below(5);
    if (oneIn(8)) {
        length = 0;
    } else if (oneIn(12)) {
        length = 50 + below(2000);
    }
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += oneIn(3) ? oneOf(others) : oneOf(known);
    }
    if (oneIn(6)) {
        text += oneOf(std::vector<std::string>{" ", "\t", "\r", "\n", "\r\n", "  "});
    }
    if (oneIn(12)) {
        text.insert(0, " ");
    }
    if (oneIn(60)) {
        return text + std::string(70'000, 'x') + text;
    }
    return text;
}

std::string Generator::output()
{
    std::string result;
    const std::size_t length = count();
    for (std::size_t i = 0; i < length; ++i) {
        switch (below(6)) {
        case 0:
            result += '\0';
            break;
        case 1:
            result += static_cast<char>(below(256));
            break;
        case 2:
            result += blanks();
            break;
        default:
            result += text();
        }
    }
    return oneIn(200) ? result + std::string(hugeSize, 'x') + result : result;
}

std::string Generator::word()
{
    std::string word = text();
    std::erase_if(word, isOneOfSixBlanks);
    return word.empty() ? "w" : word;
}

std::string Generator::textOrNothing()
{
    return oneIn(2) ? "" : text();
}

std::string Generator::nearly(const std::string& text)
{
    std::string other = text;
    switch (below(7)) {
    case 0:
        std::transform(other.begin(), other.end(), other.begin(), [](unsigned char c) { return std::toupper(c); });
        return other;
    case 1:
        return other + " ";
    case 2:
        // The last character, with all bytes that it has.
        while (!other.empty() && (other.back() & 0xC0) == 0x80) {
            other.pop_back();
        }
        return other.substr(0, other.size() - std::min<std::size_t>(other.size(), 1));
    case 3:
        return other + "2";
    case 4:
        return "x" + other;
    case 5:
        return within(other);
    default:
        return other;
    }
}

// Something in the middle of the text, between two of its characters.
std::string Generator::within(std::string text)
{
    std::size_t place = below(text.size() + 1);
    while (place < text.size() && (text[place] & 0xC0) == 0x80) {
        ++place;
    }
    return text.insert(place, word());
}

std::string Generator::blanks()
{
    std::string blanks;
    do {
        blanks += blankCharacters[below(6)];
    } while (!oneIn(3));
    return blanks;
}

std::int32_t Generator::status()
{
    static const std::vector<std::int32_t> known = {
        1, 2, 3, -1, -3, 67, 87, 125, 126, 127, 128, 255, 256, 65536, INT32_MAX, INT32_MIN, 259, 130, 137, -1073741510};
    if (oneIn(2)) {
        return 0;
    }
    return oneIn(3) ? static_cast<std::int32_t>(random_()) : oneOf(known);
}

std::size_t Generator::count()
{
    if (oneIn(8)) {
        return 0;
    }
    return oneIn(20) ? 50 + below(400) : 1 + below(6);
}

bool isOneOfSixBlanks(char character)
{
    return character != '\0' && std::string(blankCharacters).find(character) != std::string::npos;
}

std::vector<std::string> wordsOf(const std::string& text)
{
    std::vector<std::string> found;
    std::string word;
    for (const char character : text + " ") {
        if (!isOneOfSixBlanks(character)) {
            word += character;
        } else if (!word.empty()) {
            found.push_back(word);
            word.clear();
        }
    }
    return found;
}

std::string trimmedText(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(blankCharacters);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(blankCharacters) - begin + 1);
}
