// What provisioning depends on, as found on this computer. Everything is found out by looking and asking; nothing is
// changed, and nothing that is missing or broken keeps the rest from being looked at.
#pragma once

#include "doctor/archives.h"
#include "doctor/docker.h"
#include "doctor/wsl.h"
#include "request/context.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// Where a setting comes from.
enum class Source { flag, variable, builtIn };

struct Setting {
    // Readable UTF-8, empty when there is none.
    std::string value;
    Source source = Source::builtIn;
};

struct Adapter {
    // By the library's rule, empty when there is none.
    std::string address;
    std::string name;
    // Adapters that belong to WSL by their name, and that the library's rule passes over.
    std::vector<std::string> passedOver;
    // Why the adapters could not be listed, empty when they could.
    std::string failure;
};

struct TemporaryFolder {
    std::string path;
    bool exists = false;
    bool writable = false;
    std::optional<std::uintmax_t> freeBytes;
};

struct Examination {
    Backend backend = Backend::wsl;
    // The value of USE_WSL, or nothing of interest when a flag decides.
    Setting backendSetting;
    Setting release;
    Setting root;
    bool rootExists = true;
    // The distribution or image, and the container, by default.
    std::string image;
    std::string container;
    WslExamination wsl;
    DockerExamination docker;
    Adapter adapter;
    bool pullsFromRegistry = false;
    // Empty, with the failure, when the root is no text.
    std::string archiveFolder;
    std::string archiveFolderFailure;
    std::vector<Archive> archives;
    TemporaryFolder temporary;
    // How long each program was waited for.
    std::chrono::seconds timeLimit{0};
};

// Throws nothing. Once the user has interrupted kelpctl no program answers any more.
Examination examine(const Context& context);

} // namespace kelpctl
