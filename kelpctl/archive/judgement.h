// What an archive's facts mean for the environment that is to be created from it.
#pragma once

#include "archive/facts.h"
#include "asking/volume.h"
#include "failure/finding.h"
#include "request/request.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// What becomes of the archive.
enum class Purpose {
    // "wsl --import" of a root file system.
    distribution,
    // "docker load" of a saved image.
    loadedImage,
    // "docker import" of a root file system.
    importedImage,
};

Purpose purposeOf(const Request& request);

struct ArchiveTarget {
    Purpose purpose = Purpose::distribution;
    // The image that the library looks for once it is loaded.
    std::string image;
    // This computer's, as Docker calls it; empty when it is not known.
    std::string processor;
};

// The findings about an archive of that name, the order being that of the rules. A problem would make the backend fail
// for certain. Pure. What was not read is not judged.
std::vector<Finding> judgeArchive(const ArchiveFacts& facts, const std::string& name, const ArchiveTarget& expected);

// The first that is a problem; null when none is.
const Finding* problemIn(const std::vector<Finding>& findings);

// The room that creating the environment takes; nothing when the archive does not tell what it unpacks to.
std::optional<std::uintmax_t> neededBytes(const ArchiveFacts& facts, Purpose purpose);

// Pure. Nothing when there is room, or when that is not known.
std::vector<Finding> judgeRoom(const ArchiveFacts& facts, Purpose purpose, const Volume& volume);

} // namespace kelpctl
