#include "environment_block.h"

#include <string_view>

namespace orb::process::detail {

Variables variablesIn(const wchar_t* block)
{
    Variables variables;
    for (const wchar_t* next = block; *next != L'\0';) {
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

std::wstring environmentBlock(const Variables& variables)
{
    std::wstring block;
    for (const auto& [name, value] : variables) {
        block.append(name).append(1, L'=').append(value).append(1, L'\0');
    }
    return block + L'\0';
}

} // namespace orb::process::detail
