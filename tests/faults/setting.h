// A simulated machine and the process on it, as a scenario wants them.
#pragma once

#include "case_system.h"
#include "model.h"
#include "stage.h"

#include "environment_variable.h"

#include <filesystem>
#include <optional>
#include <string>

namespace faults {

std::string utf8(const std::filesystem::path& path);

// While it lives the process's environment and the host's configuration point to the machine in the folder.
class Setting {
public:
    Setting(const std::filesystem::path& folder, const Scenario& scenario);

    // Makes the machine; the folder must be new.
    void build(const std::filesystem::path& player) const;
    // Brings back what was on the machine at first.
    void resetState() const { saveState(scenario_.before, stage_.state()); }

    const Stage& stage() const { return stage_; }
    Places places() const;

private:
    Stage stage_;
    const Scenario& scenario_;
    EnvironmentVariable path_;
    EnvironmentVariable temporary_;
    EnvironmentVariable backend_;
    EnvironmentVariable registry_;
    EnvironmentVariable logging_;
    EnvironmentVariable auxiliary_;
    std::optional<WslAddress> address_;
};

} // namespace faults
