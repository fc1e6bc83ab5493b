// Facts: what provisioning depends on, as found on this computer. Nothing here is judged.
#pragma once

#include "archive/facts.h"
#include "asking/disk.h"
#include "asking/docker.h"
#include "asking/docker_settings.h"
#include "asking/volume.h"
#include "asking/wsl.h"
#include "asking/wsl_config.h"
#include "request/request.h"
#include "terminal/account.h"
#include "terminal/policies.h"

#include <chrono>
#include <cstdint>
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

// Why a program that the look-up gave was taken or not.
enum class CandidateState {
    // wsl.exe
    answers,
    failed,
    notStarted,
    timedOut,
    // docker.exe
    regularFile,
    hostsOwn,
    missing,
    link,
    notAFile,
    notReadable,
    // Either: the search had ended.
    notLookedAt,
};

struct Candidate {
    // As the look-up printed it.
    std::string path;
    CandidateState state = CandidateState::notLookedAt;
    bool taken = false;
    // What it said to "-v".
    Run answer;
};

struct WslExamination {
    // The last look-up that was tried.
    Run lookUp;
    std::vector<Candidate> candidates;
    // What the library uses: a candidate, or the place where Windows keeps it.
    std::string executable;
    // The first line of what a candidate answered, by its number alone. Empty when none did.
    std::string version;
    // "-l -q", by which the library tells what there is.
    Run listing;
    // The table of states; not asked when the listing has failed.
    Run table;
    std::vector<Distribution> distributions;
    // Of the chosen distribution; nothing while WSL has not written down that it has one.
    std::optional<Disk> disk;
    // Nothing for what the system did not tell in time.
    std::optional<std::vector<Policy>> policies;
    std::optional<WslConfigFile> config;
    // The accounts that have registered a distribution of the chosen name, other than this one.
    std::optional<std::vector<std::string>> otherAccounts;
};

struct DockerImage {
    std::string repository;
    std::string tag;
    std::string id;
    std::string size;

    // The repository without registry and path; the library compares nothing else.
    std::string name() const { return repository.substr(repository.rfind('/') + 1); }
};

struct DockerContainer {
    std::string name;
    std::string image;
    // Docker's words, which are the same in every language: "running" and "Up 3 minutes".
    std::string state;
    std::string status;
};

struct DockerExamination {
    Run lookUp;
    std::vector<Candidate> candidates;
    // What the library uses, empty when the look-up found nothing. All that the look-up printed when no candidate is fit.
    std::string client;
    // Whether there is something of that name; the library asks this before it provisions.
    bool clientExists = false;
    // What ended the search, empty when nothing did.
    std::string searchFailure;
    DockerSettings settings;
    // Where the client looks for the engine; empty when that is not known.
    std::string endpoint;
    // Those of the settings that there are no programs of.
    std::vector<std::string> missingHelpers;
    // By "docker version"; the rest is not asked when it fails.
    DockerEngine engine;
    Run imageListing;
    std::vector<DockerImage> images;
    Run containerListing;
    std::vector<DockerContainer> containers;
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

struct Archive {
    std::string name;
    ArchiveKind kind = ArchiveKind::missing;
    // As the library tells it: a file that cannot be looked at does not exist.
    bool present = false;
    std::uintmax_t size = 0;
    // `setup` takes this one when it needs an archive.
    bool taken = false;
};

struct TemporaryFolder {
    std::string path;
    bool exists = false;
    bool writable = false;
    std::optional<std::uintmax_t> freeBytes;
};

struct Examination {
    // Nothing when the system did not tell in time.
    std::optional<Account> account;
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
    // What a look into the one that is taken has found.
    ArchiveFacts taken;
    // This computer's processor, and where Docker would keep the image.
    std::string processor;
    Volume engineVolume;
    TemporaryFolder temporary;
    // How long each program was waited for.
    std::chrono::seconds timeLimit{0};
};

} // namespace kelpctl
