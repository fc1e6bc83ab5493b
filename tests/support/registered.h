// Distributions that are registered with WSL, for tests.
#pragma once

#include "environment_variable.h"
#include "temporary_folder.h"

#include <filesystem>
#include <optional>
#include <string>

// While this lives, what this process registers is seen by no other, not even by its children: tests run side by side, and
// have one user. Only Windows needs that.
class OwnRegistry {
public:
    OwnRegistry();
    ~OwnRegistry();
    OwnRegistry(const OwnRegistry&) = delete;
    OwnRegistry& operator=(const OwnRegistry&) = delete;

private:
    std::wstring path_;
};

// A distribution that is registered with WSL while this lives: in the user's registry on Windows, in that of a stand-in of
// the test's own elsewhere. One at a time elsewhere.
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
