#include "machine.h"

const char* const temporaryDirectoryVariable = "TMPDIR";
const char* const programSuffix = "";

std::string unixPath(const std::filesystem::path& path)
{
    return path.string();
}

std::vector<std::unique_ptr<EnvironmentVariable>> bridgeVariables()
{
    return {};
}

LostDisk::LostDisk(const std::string& /*distribution*/, const std::filesystem::path& temporaryFolder)
{
    for (const auto& entry : std::filesystem::directory_iterator(temporaryFolder)) {
        std::filesystem::remove(entry.path() / "ext4.vhdx");
    }
}

WrittenDown::WrittenDown(const std::string& /*distribution*/) {}
