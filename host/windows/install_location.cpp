#include "install_location.h"

#include <windows.h>

#include <string>

namespace foundation::core::path {

const char16_t nativeSeparator = u'\\';

namespace {

HMODULE thisModule()
{
    HMODULE module = nullptr;
    const auto address = reinterpret_cast<LPCWSTR>(&nativeSeparator);
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    return GetModuleHandleExW(flags, address, &module) != 0 ? module : nullptr;
}

char16_t lowerCase(char16_t letter)
{
    return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter - u'A' + u'a') : letter;
}

// The module's file name; paths may be longer than MAX_PATH.
std::wstring moduleFileName(HMODULE module)
{
    std::wstring name(MAX_PATH, L'\0');
    while (true) {
        const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) {
            name.resize(length);
            return name;
        }
        name.resize(2 * name.size());
    }
}

} // namespace

// Files are found whatever the case of their names, and a library's path is as whoever loaded it wrote it.
bool sameInFileNames(char16_t left, char16_t right)
{
    return lowerCase(left) == lowerCase(right);
}

std::u16string libraryFolder()
{
    const HMODULE module = thisModule();
    if (module == nullptr) {
        return {};
    }
    const std::wstring file = moduleFileName(module);
    const std::size_t separator = file.rfind(L'\\');
    return separator == std::wstring::npos
               ? std::u16string()
               : std::u16string(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(separator));
}

} // namespace foundation::core::path
