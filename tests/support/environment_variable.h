// Sets or unsets a variable of the C runtime's environment, and brings back what was there.
#pragma once

#include <optional>
#include <string>

class EnvironmentVariable {
public:
    // Unset.
    explicit EnvironmentVariable(const std::string& name);
    EnvironmentVariable(const std::string& name, const std::string& value);
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    std::string name_;
    std::optional<std::string> before_;
};

// Sets the variable, or unsets it. On Windows an empty value is set in the C runtime too.
void setVariable(const std::string& name, const std::optional<std::string>& value);
