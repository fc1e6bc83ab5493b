#include "files.h"

#include "host/files.h"
#include "host/text.h"

#include <system_error>

namespace orb::lvm::detail {

// The standard library's throwing forms name another operation on some toolchains, so errors are named here.

std::filesystem::path toPath(const std::string& narrow)
{
    return foundation::core::text::cvt_string_ustring(narrow);
}

bool pathExists(const std::filesystem::path& path)
{
    std::error_code error;
    const bool found = std::filesystem::exists(path, error);
    if (error) {
        throw std::filesystem::filesystem_error("exists", path, error);
    }
    return found;
}

bool isLink(const std::filesystem::path& path)
{
    std::error_code error;
    const bool link = foundation::core::path::is_link(path, error);
    if (error) {
        throw std::filesystem::filesystem_error("symlink_status", path, error);
    }
    return link;
}

bool isRegularFile(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::none) {
        throw std::filesystem::filesystem_error("status", path, error);
    }
    return type == std::filesystem::file_type::regular;
}

} // namespace orb::lvm::detail
