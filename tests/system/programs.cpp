#include "programs.h"

#include <system_error>

namespace {

// A program of Windows has its suffix everywhere; only `where` has none on Linux.
std::string fileName(const std::string& name)
{
    return name == "where" ? name + programSuffix : name + ".exe";
}

// The Docker client is large.
void linkOrCopy(const std::filesystem::path& from, const std::filesystem::path& to)
{
    std::error_code error;
    std::filesystem::create_hard_link(from, to, error);
    if (error) {
        std::filesystem::copy_file(from, to);
    }
}

} // namespace

Programs::Programs(const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        linkOrCopy(standInFolder() / fileName(name), folder() / fileName(name));
    }
}
