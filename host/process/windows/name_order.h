// How the system compares the names of environment variables.
#pragma once

#include <string>

namespace orb::process::detail {

// The system's own order of names: by the values of their upper-case letters, whatever the language.
struct BeforeWithoutCase {
    bool operator()(const std::wstring& left, const std::wstring& right) const noexcept;
};

} // namespace orb::process::detail
