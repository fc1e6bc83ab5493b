#include "terminal/table.h"

#include "terminal/text.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace kelpctl {
namespace {

constexpr std::size_t tableColumns = 120;
constexpr std::size_t markColumns = 11;
constexpr std::size_t labelColumns = 24;
constexpr char margin[] = "  ";

struct MarkLook {
    const char* word;
    const char* colour;
};

constexpr std::array<MarkLook, 4> looks = {
    {{"", ""}, {"ok", "\x1b[32m"}, {"note", "\x1b[33m"}, {"PROBLEM", "\x1b[1;31m"}}};

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The characters of UTF-8 text.
std::size_t lengthOf(const std::string& text)
{
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continuesCharacter));
}

// One blank at least.
std::string padded(std::string text, std::size_t columns)
{
    text.append(std::max(columns, lengthOf(text) + 1) - lengthOf(text), ' ');
    return text;
}

// Nothing that has a meaning is that long.
std::string cut(std::string text)
{
    constexpr std::size_t longest = 600;
    if (text.size() > longest) {
        std::size_t end = longest;
        while (continuesCharacter(text[end])) {
            --end;
        }
        text.resize(end);
        text += " ...";
    }
    return text;
}

std::string withoutBlanksAtEnd(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

std::string TableLines::markColumn(Mark mark) const
{
    const MarkLook& look = looks[static_cast<std::size_t>(mark)];
    std::string column = margin + padded(look.word, markColumns - 2);
    if (!colours_ || mark == Mark::none) {
        return column;
    }
    const std::string word = look.word;
    return margin + (look.colour + word + plainSequence) + column.substr(2 + word.size());
}

void TableLines::section(const std::string& title)
{
    if (!lines_.empty()) {
        lines_.emplace_back();
    }
    lines_.push_back(colours_ ? boldSequence + title + plainSequence : title);
}

void TableLines::row(Mark mark, const std::string& label, const std::string& value)
{
    lines_.push_back(withoutBlanksAtEnd(markColumn(mark) + padded(escaped(label), labelColumns) + cut(escaped(value))));
}

void TableLines::text(Mark mark, const std::string& text)
{
    for (const std::string& line : displayLines(text)) {
        for (const std::string& part : wrapped(line, tableColumns - markColumns)) {
            lines_.push_back(markColumn(mark) + part);
            mark = Mark::none;
        }
    }
}

std::vector<std::string> wrapped(const std::string& text, std::size_t columns)
{
    std::istringstream words(text);
    std::vector<std::string> lines;
    for (std::string word; words >> word;) {
        if (!lines.empty() && lengthOf(lines.back()) + 1 + lengthOf(word) <= columns) {
            lines.back() += " " + word;
        } else {
            lines.push_back(word);
        }
    }
    return lines;
}

} // namespace kelpctl
