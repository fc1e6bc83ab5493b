// A state folder of a test's own, and no user's.
#pragma once

#include "environment_variable.h"
#include "temporary_folder.h"

class StateFolder {
public:
    const std::filesystem::path& path() const { return folder_.path(); }

private:
    TemporaryFolder folder_;
    EnvironmentVariable linux_{"XDG_STATE_HOME", folder_.path().string()};
    EnvironmentVariable windows_{"LOCALAPPDATA", folder_.path().string()};
};
