#include "files.h"

#include "host/text.h"

namespace orb::lvm::detail {

std::filesystem::path toPath(const std::string& narrow)
{
    return foundation::core::text::cvt_string_ustring(narrow);
}

} // namespace orb::lvm::detail
