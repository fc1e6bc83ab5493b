#include "host/files.h"

#include "configured_folder.h"
#include "full_path.h"
#include "handle.h"
#include "system_error.h"

#include <optional>
#include <string_view>

#include <windows.h>

namespace foundation::core::path {

using system::FileSystemError;
using system::Handle;

namespace {

// In the form in which paths of any length are taken.
std::wstring systemForm(const std::wstring& path)
{
    constexpr std::wstring_view anyLength = LR"(\\?\)";
    if (path.size() < MAX_PATH || path.starts_with(anyLength)) {
        return path;
    }
    try {
        const std::wstring full = fullPath(path);
        return full.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + full.substr(1) : std::wstring(anyLength) + full;
    } catch (const std::system_error&) {
        // Whoever is given the path says the same.
        return path;
    }
}

// One test of one path.
class Test {
public:
    Test(const char* operation, const std::filesystem::path& path)
        : operation_(operation), path_(path), form_(systemForm(path.native()))
    {
    }

    // Of the path itself; nothing when it leads nowhere.
    std::optional<DWORD> attributes() const
    {
        const DWORD attributes = GetFileAttributesW(form_.c_str());
        return attributes == INVALID_FILE_ATTRIBUTES ? nothing() : std::optional(attributes);
    }

    // Whether a path with these attributes stands for another one. Other reparse points (files kept in the cloud,
    // programs of the store) are files in their own right, and some of them cannot be opened.
    bool isLink(DWORD attributes) const
    {
        if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
            return false;
        }
        const Handle file = open(FILE_FLAG_OPEN_REPARSE_POINT);
        FILE_ATTRIBUTE_TAG_INFO found{};
        if (!file || GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &found, sizeof found) == FALSE) {
            nothing();
            return false;
        }
        return IsReparseTagNameSurrogate(found.ReparseTag);
    }

    // Of what the path leads to, links followed.
    std::optional<DWORD> targetAttributes() const
    {
        const std::optional<DWORD> own = attributes();
        if (!own || !isLink(*own)) {
            return own;
        }
        const Handle file = open(0);
        BY_HANDLE_FILE_INFORMATION found{};
        if (!file || GetFileInformationByHandle(file.get(), &found) == FALSE) {
            return nothing();
        }
        return found.dwFileAttributes;
    }

private:
    // When the system refuses a look: that the path leads nowhere is an answer, anything else an error.
    std::optional<DWORD> nothing() const
    {
        const DWORD code = GetLastError();
        if (!system::meansMissing(code)) {
            throw FileSystemError(operation_, path_, code);
        }
        return std::nullopt;
    }

    Handle open(DWORD flags) const
    {
        constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        // Without the first flag it would be files only.
        return Handle(CreateFileW(form_.c_str(), FILE_READ_ATTRIBUTES, shareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
    }

    const char* operation_;
    const std::filesystem::path& path_;
    const std::wstring form_;
};

std::u16string systemTemporaryDirectory()
{
    std::wstring name(MAX_PATH + 1, L'\0');
    const DWORD length = GetTempPathW(static_cast<DWORD>(name.size()), name.data());
    if (length == 0 || length > name.size()) {
        const DWORD code = length == 0 ? GetLastError() : ERROR_FILENAME_EXCED_RANGE;
        throw FileSystemError("temp_directory_name", {}, code);
    }
    name.resize(length);
    return {name.begin(), name.end()};
}

} // namespace

bool exists(const std::filesystem::path& path)
{
    return Test("exists", path).targetAttributes().has_value();
}

bool is_link(const std::filesystem::path& path)
{
    const Test test("symlink_status", path);
    const std::optional<DWORD> attributes = test.attributes();
    return attributes && test.isLink(*attributes);
}

bool is_regular_file(const std::filesystem::path& path)
{
    const std::optional<DWORD> attributes = Test("status", path).targetAttributes();
    return attributes && (*attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::u16string temp_directory_name()
{
    const std::optional<std::u16string> configured = configuredTemporaryFolder();
    std::u16string name = configured ? *configured : systemTemporaryDirectory();
    // "C:\" keeps its separator: without it the text would mean the drive's current folder.
    while (name.size() > 3 && (name.back() == u'\\' || name.back() == u'/')) {
        name.pop_back();
    }
    return name;
}

} // namespace foundation::core::path
