#include "configured_folder.h"

#include "host/configuration.h"
#include "host/text.h"

namespace foundation::core::path {

std::optional<std::u16string> configuredTemporaryFolder()
{
    const std::string folder = config::configuration().temporaryFolder().value_or("");
    return folder.empty() ? std::nullopt : std::optional(text::cvt_utf8_ustring(folder));
}

} // namespace foundation::core::path
