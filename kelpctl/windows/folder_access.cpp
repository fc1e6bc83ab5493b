#include "folder_access.h"

#include <windows.h>

namespace kelpctl {

// Windows compares the rights that are asked for with the folder's list when the folder is opened, not when it is used.
bool mayWriteInto(const std::filesystem::path& folder)
{
    const HANDLE opened = CreateFileW(folder.c_str(), FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return false;
    }
    CloseHandle(opened);
    return true;
}

} // namespace kelpctl
