#include "asking/volume.h"

#include "lvm/files.h"

#include "host/environment.h"
#include "host/files.h"
#include "host/text.h"

#include <exception>
#include <system_error>

namespace kelpctl {
namespace {

using orb::lvm::detail::toPath;

bool isFolder(const std::filesystem::path& path)
{
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find_first_of("\r\n"));
}

} // namespace

Volume volumeOf(const std::filesystem::path& folder)
{
    Volume volume;
    try {
        volume.folder = foundation::core::text::cvt_ustring_utf8(folder.u16string());
    } catch (const std::exception&) {
        return volume;
    }
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(folder, error);
    if (!error) {
        volume.freeBytes = space.available;
    }
    return volume;
}

// The standard library does not name a temporary folder that is none; the first of these variables that is set does.
std::filesystem::path temporaryPath()
{
    try {
        return foundation::core::path::temp_directory_name();
    } catch (const std::filesystem::filesystem_error&) {
        for (const char* name : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
            if (const std::string value = foundation::core::env::variable(name).value_or(""); !value.empty()) {
                return toPath(value);
            }
        }
        throw;
    }
}

Volume temporaryVolume()
{
    try {
        return volumeOf(temporaryPath());
    } catch (const std::exception&) {
        return {};
    }
}

Volume engineVolume(const Programs& programs, const std::string& client)
{
    const Run root = ask(programs, {client, "info", "--format", "{{.DockerRootDir}}"});
    try {
        const std::filesystem::path folder = toPath(firstLine(root.output));
        if (root.succeeded() && folder.is_absolute() && isFolder(folder)) {
            return volumeOf(folder);
        }
        const std::string local = foundation::core::env::variable("LOCALAPPDATA").value_or("");
        const std::filesystem::path desktop = toPath(local) / "Docker";
        if (root.succeeded() && !local.empty() && isFolder(desktop)) {
            return volumeOf(desktop);
        }
    } catch (const std::exception&) {
        return {};
    }
    return {};
}

} // namespace kelpctl
