#include "environment_variable.h"

#include <windows.h>

#include <cstdlib>

namespace {

std::wstring wide(const std::string& text)
{
    const int length = static_cast<int>(text.size());
    std::wstring result(text.size(), L'\0');
    result.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(), static_cast<int>(result.size()))));
    return result;
}

} // namespace

void setVariable(const std::string& name, const std::optional<std::string>& value)
{
    // The C runtime takes an empty value as a request to remove the variable, so a placeholder is set and emptied.
    const bool isEmpty = value && value->empty();
    _wputenv_s(wide(name).c_str(), wide(isEmpty ? "x" : value.value_or("")).c_str());
    if (isEmpty) {
        *std::getenv(name.c_str()) = '\0';
    }
}
