#include "host/files.h"

#include "host/text.h"

#include "configured_folder.h"

namespace foundation::core::path {

namespace {

std::u16string systemTemporaryDirectory()
{
    return text::cvt_utf8_ustring(std::filesystem::temp_directory_path().string());
}

using Look = std::filesystem::file_status(const std::filesystem::path& path, std::error_code& error);

std::filesystem::file_type typeBy(Look look, const char* operation, const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::file_type type = look(path, error).type();
    if (type == std::filesystem::file_type::none) {
        throw std::filesystem::filesystem_error(operation, path, error);
    }
    return type;
}

} // namespace

std::u16string temp_directory_name()
{
    const std::optional<std::u16string> configured = configuredTemporaryFolder();
    std::u16string name = configured ? *configured : systemTemporaryDirectory();
    while (name.size() > 1 && name.back() == u'/') {
        name.pop_back();
    }
    return name;
}

bool exists(const std::filesystem::path& path)
{
    return typeBy(std::filesystem::status, "exists", path) != std::filesystem::file_type::not_found;
}

bool is_link(const std::filesystem::path& path)
{
    return typeBy(std::filesystem::symlink_status, "symlink_status", path) == std::filesystem::file_type::symlink;
}

bool is_regular_file(const std::filesystem::path& path)
{
    return typeBy(std::filesystem::status, "status", path) == std::filesystem::file_type::regular;
}

} // namespace foundation::core::path
