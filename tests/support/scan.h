// Tells whether a text has a form, step by step: regular expressions take the compiler seconds in each source.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

// Each step takes as much of the text as it can, and fails when there is nothing that fits; steps behind a failed one do
// nothing.
class Scan {
public:
    static constexpr std::string_view digits = "0123456789";

    explicit Scan(std::string_view text) : text_(text) {}

    Scan& literal(std::string_view expected) { return take(rest().starts_with(expected) ? expected.size() : missing); }

    // One of the characters, at least one of them, or at most one.
    Scan& one(std::string_view of) { return take(some(of) == 0 ? missing : 1); }
    Scan& atLeastOne(std::string_view of) { return take(some(of) == 0 ? missing : some(of)); }
    Scan& atMostOne(std::string_view of) { return take(std::min<std::size_t>(some(of), 1)); }

    // At least one other character, or as many as there are.
    Scan& atLeastOneBut(std::string_view of) { return take(others(of) == 0 ? missing : others(of)); }
    Scan& anyBut(std::string_view of) { return take(others(of)); }

    // What has been taken so far is not what is looked for, only in front of it.
    Scan& mark()
    {
        mark_ = position_;
        return *this;
    }

    bool fits() const { return fits_; }
    // Whether the whole text has been taken.
    bool whole() const { return fits_ && position_ == text_.size(); }

    // Where what is looked for begins and ends.
    std::size_t begin() const { return mark_; }
    std::size_t end() const { return position_; }

private:
    static constexpr std::size_t missing = std::string_view::npos;

    std::string_view rest() const { return text_.substr(position_); }
    std::size_t some(std::string_view of) const { return std::min(rest().find_first_not_of(of), rest().size()); }
    std::size_t others(std::string_view of) const { return std::min(rest().find_first_of(of), rest().size()); }

    Scan& take(std::size_t length)
    {
        fits_ = fits_ && length != missing;
        position_ += fits_ ? length : 0;
        return *this;
    }

    std::string_view text_;
    std::size_t position_ = 0;
    std::size_t mark_ = 0;
    bool fits_ = true;
};

// Puts `token` in the place of everything in the text that `form` takes, a function from Scan& to nothing.
template <class Form>
std::string replacedEach(std::string text, const Form& form, const std::string& token)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        Scan scan(std::string_view(text).substr(at));
        form(scan);
        if (scan.fits()) {
            text.replace(at + scan.begin(), scan.end() - scan.begin(), token);
            at += scan.begin() + token.size() - 1;
        }
    }
    return text;
}
