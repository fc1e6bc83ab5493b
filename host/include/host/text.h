// Text conversion. Host text and paths are UTF-16 on every system; narrow text is UTF-8.
//
// Every conversion is strict: text that is not well-formed in its source encoding is an error, never a
// replacement character. All functions are pure and may be called from any thread.
#pragma once

#include "host/export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::core::text {

// UTF-16 to UTF-8. `length` counts code units; embedded NULs are converted like any other unit.
// Throws std::system_error (errc::illegal_byte_sequence) on an unpaired surrogate.
KORVANE_HOST_API std::string cvt_ustring_utf8(const char16_t* text, std::size_t length);

inline std::string cvt_ustring_utf8(std::u16string_view text)
{
    return cvt_ustring_utf8(text.data(), text.size());
}

// UTF-8 to UTF-16.
// Throws std::system_error (errc::illegal_byte_sequence) on truncated, overlong or surrogate sequences and on
// values above U+10FFFF.
KORVANE_HOST_API std::u16string cvt_utf8_ustring(std::string_view text);

// UTF-16 to the native narrow encoding, in which paths are passed to programs. It is UTF-8 on all our systems. Make a
// std::filesystem::path of such text through cvt_string_ustring(): on Windows the standard library would read the bytes
// by rules of its own.
// Throws std::system_error (errc::illegal_byte_sequence) on an unpaired surrogate.
KORVANE_HOST_API std::string cvt_ustring_string(std::u16string_view text);

// The native narrow encoding to UTF-16. On Windows text that is not UTF-8 is taken for what a program printed in the
// code page of consoles, such as a path of the system's look-up command.
// Throws std::system_error: errc::illegal_byte_sequence for text that is neither, errc::value_too_large for
// more bytes than a path can have (2,147,483,647).
KORVANE_HOST_API std::u16string cvt_string_ustring(std::string_view text);

// What a program printed, as UTF-8 that can be shown to a person. wsl.exe and the programs it starts write UTF-16LE
// and UTF-8 to one stream, so each line is judged on its own: a line of well-formed UTF-8 without NULs stays as
// it is, any other is read as UTF-16LE. Lines end in a single newline character afterwards, and what is neither
// becomes U+FFFD. For display only: never throws on bad input.
KORVANE_HOST_API std::string readable(std::string_view captured);

} // namespace foundation::core::text
