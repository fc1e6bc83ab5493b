// The message catalogue: localised texts for the identifiers that errors carry.
//
// English is built in. A translation is a file "<catalogue with ':' as '_'>.<language>.json" in the "resources" folder
// of the installation root, UTF-8: an object that maps identifiers to texts. "{1}" to "{9}" stand for the
// message's arguments. A file that is missing or broken, and an entry that is missing or lacks a placeholder, fall back
// to English.
#pragma once

#include "host/export.h"

#include <string>
#include <utility>
#include <vector>

namespace foundation::core::message {

// An argument of a message: narrow text as the thrower had it, bytes unchanged.
class Argument {
public:
    Argument(std::string text) : text_(std::move(text)) {}
    const std::string& text() const noexcept { return text_; }

private:
    std::string text_;
};

struct Message {
    std::string catalogue;
    std::string identifier;
    std::vector<Argument> arguments;
};

// The message in the configured language. Arguments are made readable (see text::readable). An identifier that no
// catalogue knows gives its own name and the arguments. Any thread; files are read at each call.
KORVANE_HOST_API std::string localisedText(const Message& message);

// The same for a program's own catalogue: `english` is the text that a translation must have the placeholders of, and
// that is used where there is none.
KORVANE_HOST_API std::string localisedText(const Message& message, const std::string& english);

// The message in English, without reading any file.
KORVANE_HOST_API std::string englishText(const Message& message);

// Whether there is a translation of the catalogue, however complete. English is always there. Reads a file.
KORVANE_HOST_API bool hasLanguage(const std::string& catalogue, const std::string& language);

} // namespace foundation::core::message
