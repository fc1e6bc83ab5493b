#include "environment_variable.h"

#include <cstdlib>

namespace {

std::optional<std::string> current(const std::string& name)
{
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

EnvironmentVariable::EnvironmentVariable(const std::string& name) : name_(name), before_(current(name))
{
    setVariable(name, std::nullopt);
}

EnvironmentVariable::EnvironmentVariable(const std::string& name, const std::string& value)
    : name_(name), before_(current(name))
{
    setVariable(name, value);
}

EnvironmentVariable::~EnvironmentVariable()
{
    setVariable(name_, before_);
}
