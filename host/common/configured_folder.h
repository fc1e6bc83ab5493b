// The temporary folder that the host has configured.
#pragma once

#include <optional>
#include <string>

namespace foundation::core::path {

// Nothing when none is. Throws std::system_error (errc::illegal_byte_sequence) when it is not UTF-8.
std::optional<std::u16string> configuredTemporaryFolder();

} // namespace foundation::core::path
