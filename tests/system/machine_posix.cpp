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
