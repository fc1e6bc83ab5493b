#include "host/files.h"

#include "random_bits.h"

#include "host/text.h"

#include <sys/random.h>

#include <cerrno>

namespace foundation::core::path {

std::u16string temp_directory_name()
{
    std::string name = std::filesystem::temp_directory_path().string();
    while (name.size() > 1 && name.back() == '/') {
        name.pop_back();
    }
    return text::cvt_utf8_ustring(name);
}

bool is_link(const std::filesystem::path& path, std::error_code& error)
{
    const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
    if (status.type() != std::filesystem::file_type::none) {
        error.clear();
    }
    return std::filesystem::is_symlink(status);
}

RandomBits randomBits()
{
    RandomBits bits{};
    if (getrandom(bits.data(), bits.size(), 0) != static_cast<ssize_t>(bits.size())) {
        throw std::system_error(errno, std::system_category(), "getrandom");
    }
    return bits;
}

} // namespace foundation::core::path
