#include "host/environment.h"

#include <cstdlib>

namespace foundation::core::env {

std::optional<std::string> variable(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace foundation::core::env
