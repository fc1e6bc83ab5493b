#include "install_location.h"

#include "host/text.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace foundation::core::path {

const char16_t nativeSeparator = u'/';

bool sameInFileNames(char16_t left, char16_t right)
{
    return left == right;
}

std::u16string libraryFolder()
{
    Dl_info info{};
    // The library itself is asked for, which is always there.
    if (dladdr(&nativeSeparator, &info) == 0 || info.dli_fname == nullptr) { // uncovered: see above
        return {};
    }
    std::error_code error;
    const std::filesystem::path library = std::filesystem::canonical(info.dli_fname, error);
    // uncovered: a library whose file has been taken away
    return error ? std::u16string() : text::cvt_utf8_ustring(library.parent_path().string());
}

} // namespace foundation::core::path
