// A distribution that is registered with WSL while this lives, for this process alone: in a registry of its own on Windows,
// in that of a stand-in of the test's own elsewhere. One at a time elsewhere.
#pragma once

#include "environment_variable.h"
#include "temporary_folder.h"

#include <filesystem>
#include <optional>
#include <string>

class Registered {
public:
    struct Entry {
        std::string name;
        // Nothing for an entry that lacks it.
        std::optional<std::filesystem::path> folder;
        bool installed = true;
        // WSL 2, so that it has a disk.
        bool ownMachine = true;
    };

    explicit Registered(const Entry& entry);
    ~Registered();
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

    // A folder that nobody can tell of whether something is in it.
    std::filesystem::path unreachableFolder() const;

private:
    TemporaryFolder folder_;
    std::optional<EnvironmentVariable> state_;
    std::wstring key_;
};
