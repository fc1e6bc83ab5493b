// Environment variables as a program receives them.
#pragma once

#include "host/process.h"

#include <map>
#include <string>

namespace orb::process::detail {

// The system's own order of names: by the values of their upper-case letters, whatever the language.
struct BeforeWithoutCase {
    bool operator()(const std::wstring& left, const std::wstring& right) const noexcept;
};

// Each name once, in the order that the system wants.
using Variables = std::map<std::wstring, std::wstring, BeforeWithoutCase>;

// This process's variables, including the hidden ones that hold each drive's current folder, with those of
// `environment` in their place or added. SystemRoot is always there, since programs cannot load the system's own
// libraries without it. Throws std::invalid_argument for text that is not UTF-8.
Variables variablesWith(const Environment& environment);

// The form that the system takes: "NAME=VALUE" for each, a zero behind each and one more at the end.
std::wstring environmentBlock(const Variables& variables);

// The opposite. What is no "NAME=VALUE" is passed over; of two entries of one name the first counts.
Variables variablesIn(const wchar_t* block);

} // namespace orb::process::detail
