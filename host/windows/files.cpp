#include "host/files.h"

#include "random_bits.h"

#include <windows.h>

#include <bcrypt.h>

namespace foundation::core::path {
namespace {

// What Windows says of a path that leads nowhere.
bool meansMissing(DWORD code)
{
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND || code == ERROR_BAD_NETPATH ||
           code == ERROR_INVALID_NAME;
}

} // namespace

std::u16string temp_directory_name()
{
    std::wstring name(MAX_PATH + 1, L'\0');
    const DWORD length = GetTempPathW(static_cast<DWORD>(name.size()), name.data());
    if (length == 0 || length > name.size()) {
        const DWORD code = length == 0 ? GetLastError() : ERROR_FILENAME_EXCED_RANGE;
        throw std::filesystem::filesystem_error("temp_directory_name",
                                                std::error_code(static_cast<int>(code), std::system_category()));
    }
    name.resize(length);
    // "C:\" keeps its separator: without it the text would mean the drive's current folder.
    while (name.size() > 3 && name.back() == L'\\') {
        name.pop_back();
    }
    return {name.begin(), name.end()};
}

bool is_link(const std::filesystem::path& path, std::error_code& error)
{
    error.clear();
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD code = GetLastError();
        if (!meansMissing(code)) {
            error.assign(static_cast<int>(code), std::system_category());
        }
        return false;
    }
    FindClose(search);
    const bool isReparsePoint = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    // Other reparse points (files kept in the cloud, deduplicated files) are files in their own right.
    return isReparsePoint &&
           (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

RandomBits randomBits()
{
    RandomBits bits{};
    const NTSTATUS status =
        BCryptGenRandom(nullptr, bits.data(), static_cast<ULONG>(bits.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
    if (status < 0) {
        throw std::system_error(static_cast<int>(status), std::system_category(), "BCryptGenRandom");
    }
    return bits;
}

} // namespace foundation::core::path
