#include "environment_variable.h"

#include <cstdlib>

void setVariable(const std::string& name, const std::optional<std::string>& value)
{
    // The C runtime takes an empty value as a request to remove the variable, so a placeholder is set and emptied.
    const bool isEmpty = value && value->empty();
    _putenv_s(name.c_str(), isEmpty ? "x" : value.value_or("").c_str());
    if (isEmpty) {
        *std::getenv(name.c_str()) = '\0';
    }
}
