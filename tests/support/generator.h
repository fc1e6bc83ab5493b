// Values for tests of whole rules: texts, lists and numbers that nobody would think of, and those that somebody might take
// for a special case. The same seed gives the same values on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

class Generator {
public:
    explicit Generator(std::uint64_t seed) : random_(seed) {}

    // 0 to limit - 1.
    std::size_t below(std::size_t limit);
    bool oneIn(std::size_t count);
    template <class Value>
    const Value& oneOf(const std::vector<Value>& values)
    {
        return values.at(below(values.size()));
    }

    // UTF-8 without zero characters: often a few pieces, now and then none, or more than fits any buffer.
    std::string text();
    // The same with zero characters, bytes that are no UTF-8, and all sorts of line ends.
    std::string output();
    // A text without blanks, at least one character.
    std::string word();
    // Empty half the time, otherwise a text; for what has a default.
    std::string textOrNothing();
    // Nearly `text`: in another case, with a blank, cut, continued, or with something in it. Sometimes the same.
    std::string nearly(const std::string& text);
    // Blanks of all kinds, at least one.
    std::string blanks();
    // 0 half the time.
    std::int32_t status();
    // Mostly a few, now and then none or hundreds.
    std::size_t count();

private:
    std::string within(std::string text);

    std::mt19937_64 random_;
};

// Whether the character is one of the "C" locale's six blanks.
bool isOneOfSixBlanks(char character);

// What those blanks separate.
std::vector<std::string> wordsOf(const std::string& text);

// The text from its first to its last character that is no blank.
std::string trimmedText(const std::string& text);
