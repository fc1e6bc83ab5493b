// Takes what nobody else must see out of texts that are handed on.
#pragma once

#include <boost/json/value.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

// What is masked becomes "***". In bytes it is found as UTF-8 and as UTF-16LE.
class Mask {
public:
    // Wherever it stands. One of fewer than four bytes only where it is a whole text of a JSON value: elsewhere it would
    // be found in what has nothing to do with it.
    void addSecret(const std::string& secret);

    // Wherever it stands as a word, in whatever case of ASCII letters. One of a single byte is left.
    void addName(const std::string& name);

    std::string applied(std::string_view bytes) const;

    // The same of the first MiB, which is more than anybody reads of what a program printed; credentials in addresses are
    // masked as well, as withoutCredentials() does.
    std::string beginningOf(std::string_view bytes) const;

    // All texts of a value, credentials in addresses masked as well. The names of members stay.
    boost::json::value appliedToTexts(const boost::json::value& value) const;

private:
    struct Pattern {
        std::string bytes;
        // How many bytes a letter has.
        std::size_t width = 1;
        bool isName = false;
    };
    void add(const std::string& text, bool isName);
    static bool foundAt(std::string_view text, std::size_t position, const Pattern& pattern);

    // The longest first, so that no rest of one stays that begins like another.
    std::vector<Pattern> patterns_;
    std::vector<std::string> wholeTexts_;
};

// The text with what stands between "://" and "@" in front of the next "/" or blank masked: names and passwords.
std::string withoutCredentials(std::string_view text);

} // namespace kelpctl
