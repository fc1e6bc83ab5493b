#include "variables.h"

#include "last_error.h"
#include "wide_text.h"

#include <array>
#include <memory>

#include <windows.h>

namespace orb::process::detail {

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

} // namespace

bool BeforeWithoutCase::operator()(const std::wstring& left, const std::wstring& right) const noexcept
{
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
}

Variables variablesWith(const Environment& environment)
{
    Variables variables = inheritedVariables();
    for (const auto& [name, value] : environment) {
        variables.insert_or_assign(wide(name), wide(value));
    }
    variables.emplace(L"SystemRoot", systemRoot());
    return variables;
}

} // namespace orb::process::detail
