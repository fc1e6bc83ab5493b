// A folder of programs that is the whole search path.
#pragma once

#include "machine.h"

#include <filesystem>
#include <string>
#include <vector>

class Programs {
public:
    // Stand-ins by their names without a suffix: "where", "wsl", "docker".
    explicit Programs(const std::vector<std::string>& names);

    const std::filesystem::path& folder() const { return folder_.path(); }

private:
    TemporaryFolder folder_;
};
