#include "variables.h"

#include "system_error.h"
#include "wide_text.h"

#include <array>
#include <memory>
#include <utility>

#include <windows.h>

namespace orb::process::detail {

using foundation::core::system::lastError;

namespace {

struct FreeStrings {
    void operator()(wchar_t* strings) const noexcept { FreeEnvironmentStringsW(strings); }
};

Variables inheritedVariables()
{
    const std::unique_ptr<wchar_t, FreeStrings> strings(GetEnvironmentStringsW());
    if (!strings) {
        throw lastError("cannot read the environment");
    }
    return variablesIn(strings.get());
}

std::wstring systemRoot()
{
    std::array<wchar_t, MAX_PATH> folder{};
    const UINT length = GetSystemWindowsDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return {folder.data(), length};
}

// The entry is written anew, since what is replaced may have its name in other letters. Windows does not mind them, but
// WSL looks up by the exact name what it hands over to Linux.
void put(Variables& variables, const std::wstring& name, std::wstring value)
{
    variables.erase(name);
    variables.emplace(name, std::move(value));
}

} // namespace

Variables variablesWith(const Environment& environment)
{
    Variables variables = inheritedVariables();
    for (const auto& [name, value] : environment) {
        put(variables, wide(name), wide(value));
    }
    // WSL finds its list under the name in upper case only.
    if (const auto list = variables.find(L"WSLENV"); list != variables.end()) {
        put(variables, L"WSLENV", list->second);
    }
    variables.emplace(L"SystemRoot", systemRoot());
    return variables;
}

} // namespace orb::process::detail
