// Environment variables in the system's form. Plain text work, the same wherever it is compiled.
#pragma once

#include "name_order.h"

#include <map>
#include <string>

namespace orb::process::detail {

// Each name once, in the order that the system wants.
using Variables = std::map<std::wstring, std::wstring, BeforeWithoutCase>;

// The form that the system takes: "NAME=VALUE" for each, a zero behind each and one more at the end.
std::wstring environmentBlock(const Variables& variables);

// The opposite. What is no "NAME=VALUE" is passed over; of two entries of one name the first counts.
Variables variablesIn(const wchar_t* block);

} // namespace orb::process::detail
