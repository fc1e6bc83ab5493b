#include "program_search.h"

#include "full_path.h"
#include "program_not_found.h"
#include "system_error.h"
#include "wide_text.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <windows.h>

namespace orb::process::detail {

using foundation::core::path::fullPath;

namespace {

bool isFile(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool isMissing(const std::wstring& path)
{
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
        return false;
    }
    return foundation::core::system::meansMissing(GetLastError());
}

bool isSlash(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

// On a drive from its root, or on a share.
bool isAbsolute(std::wstring_view folder)
{
    const bool onDrive = folder.size() >= 3 && folder[1] == L':' && isSlash(folder[2]);
    const bool onShare = folder.size() >= 3 && isSlash(folder[0]) && isSlash(folder[1]);
    return onDrive || onShare;
}

// The entries of a PATH. Quotes, which protect a semicolon, are no part of them.
std::vector<std::wstring> entries(std::wstring_view path)
{
    std::vector<std::wstring> all(1);
    bool quoted = false;
    for (const wchar_t character : path) {
        if (character == L'"') {
            quoted = !quoted;
        } else if (character == L';' && !quoted) {
            all.emplace_back();
        } else {
            all.back() += character;
        }
    }
    return all;
}

std::wstring searchFolders(const std::wstring& name, const Variables& variables)
{
    const auto path = variables.find(L"PATH");
    if (path != variables.end()) {
        for (const std::wstring& folder : entries(path->second)) {
            std::wstring file = folder;
            file.append(1, L'\\').append(name);
            if (isAbsolute(folder) && isFile(file)) {
                return file;
            }
        }
    }
    return {};
}

} // namespace

std::wstring findProgram(const std::string& program, const Variables& variables)
{
    const std::wstring name = wide(program);
    if (program.find_first_of("\\/:") != std::string::npos) {
        std::wstring file = fullPath(name);
        if (isMissing(file)) {
            throw ProgramNotFound(program);
        }
        return file;
    }
    if (name.empty()) {
        throw ProgramNotFound(program);
    }
    const bool hasExtension = name.find(L'.') != std::wstring::npos;
    std::wstring file = searchFolders(hasExtension ? name : name + L".exe", variables);
    if (file.empty()) {
        throw ProgramNotFound(program);
    }
    return file;
}

} // namespace orb::process::detail
