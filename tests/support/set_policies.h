// Policies of WSL that are set while this lives: on this computer on Windows, beside the registry of a stand-in elsewhere.
#pragma once

#include "environment_variable.h"
#include "temporary_folder.h"

#include <map>
#include <optional>
#include <string>

class SetPolicies {
public:
    // Elsewhere than on Windows: of the stand-in whose state is in the folder that WSL_STAND_IN_STATE names, and of one of
    // the test's own when it names none.
    explicit SetPolicies(const std::map<std::string, unsigned>& policies);
    ~SetPolicies();
    SetPolicies(const SetPolicies&) = delete;
    SetPolicies& operator=(const SetPolicies&) = delete;

private:
    std::map<std::string, unsigned> policies_;
    TemporaryFolder folder_;
    std::optional<EnvironmentVariable> state_;
};
