#include "variables.h"

#include "last_error.h"
#include "wide_text.h"

#include <array>
#include <memory>
#include <string_view>

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
    Variables variables;
    for (const wchar_t* next = strings.get(); *next != L'\0';) {
        const std::wstring_view line = next;
        next += line.size() + 1;
        // The first character belongs to the name: those of drives are "=C:".
        const std::size_t end = line.find(L'=', 1);
        if (end != std::wstring_view::npos) {
            variables.emplace(line.substr(0, end), line.substr(end + 1));
        }
    }
    return variables;
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

std::wstring environmentBlock(const Variables& variables)
{
    std::wstring block;
    for (const auto& [name, value] : variables) {
        block += name + L'=' + value + L'\0';
    }
    return block + L'\0';
}

} // namespace orb::process::detail
