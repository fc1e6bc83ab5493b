// Compares an answer with what a fact claims of it.
#pragma once

#include "answer.h"
#include "names.h"

#include <boost/json/object.hpp>

#include <optional>
#include <string>

namespace verify {

// The text of captured bytes, as UTF-8; nothing when they are no text of this encoding.
std::optional<std::string> textOf(const std::string& bytes, Encoding encoding);

// What differs, as "expected" and "got"; nothing when the answer is as claimed. The members of `expect`:
//
//   status      a number, a list of numbers, or "not 0"
//   terminated  whether it was ended
//   output      a text, "<warnings>" for nothing but warnings of WSL, or an object of conditions: begins, ends,
//   errors      contains, lacks, matches (the whole text, as a regular expression), hex, bytes (how many)
//
// `errors` are read as bytes whatever the encoding. Throws std::invalid_argument for a condition that nobody knows.
struct Difference {
    std::string expected;
    std::string got;
};
std::optional<Difference> compare(const Answer& answer, const boost::json::object& expect, Encoding encoding,
                                  const Names& names);

// Bytes as one line that a person can read: text when they are one, hexadecimal otherwise; the beginning when long.
std::string shown(const std::string& bytes, Encoding encoding);

} // namespace verify
