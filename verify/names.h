// The names of one run: what "<work>" and its like stand for in the table of facts. The report has them in the place of
// the real ones, so that two runs compare, and nobody's name is told.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace verify {

class Names {
public:
    // From now on `placeholder`, with its angle brackets, stands for the value. A later one wins where both fit.
    void set(const std::string& placeholder, const std::string& value);
    std::string get(std::string_view placeholder) const;

    // The names of a user and a machine: whole words that only the report's readers are kept from.
    void hideWord(const std::string& placeholder, const std::string& word);

    // A text of the table with the values in the placeholders' places.
    std::string filled(std::string text) const;
    // The same as a regular expression, in which the values stand for themselves.
    std::string filledExpression(std::string text) const;

    // The opposite, for UTF-8 text. Letters of ASCII count as the same in either case.
    std::string hidden(std::string text) const;
    // The same in raw bytes, of UTF-8 and of UTF-16.
    std::string hiddenInBytes(std::string bytes) const;

private:
    std::vector<std::pair<std::string, std::string>> values_;
    std::vector<std::pair<std::string, std::string>> words_;
};

} // namespace verify
