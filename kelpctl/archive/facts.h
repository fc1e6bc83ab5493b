// Facts: what an archive is and holds, as far as it was read. Nothing here is judged.
#pragma once

#include "archive/kind.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelpctl {

// How much of it was read.
enum class Extent { nothing, beginning, whole };

// What ended the reading early.
enum class Damage {
    none,
    // The file ends in the midst of what it holds.
    cutOff,
    // What was packed does not unpack, a checksum is wrong, or a header is none.
    broken,
    // What it unpacks to is no tar archive.
    noTar,
    // It unpacks to so much that it can be no archive of files.
    bomb,
};

// Where the shell is that programs expect, /bin/sh.
enum class ShellState {
    missing,
    present,
    // A link leads to it that was not followed: out of the folders of programs.
    elsewhere,
    // Links lead in a circle.
    circle,
};

// What a root file system has of what is asked of one.
struct RootFileSystem {
    // Either of the two makes WSL take it for a distribution.
    bool hasEtc = false;
    ShellState shell = ShellState::missing;
    // As Docker calls it, "amd64"; empty when the shell does not tell.
    std::string processor;
    bool hasWslConf = false;
    // What /etc/wsl-distribution.conf does not switch off, WSL does.
    bool makesShortcut = true;
    bool makesTerminalProfile = true;

    bool found() const { return hasEtc || shell != ShellState::missing; }
};

// An image among those that were saved.
struct SavedImage {
    // With registry and tag, as they were saved.
    std::vector<std::string> names;
    // As Docker calls them, "linux" and "amd64"; empty when the image does not tell.
    std::string system;
    std::string processor;
    // Whether it names a program to run; nothing when that is not known.
    std::optional<bool> namesProgram;
};

struct SavedImages {
    // There are files that only a saved image has.
    bool marked = false;
    // "docker save" wrote its list. All versions of Docker load by that; newer ones by the list of the OCI layout, too.
    bool hasDockerList = false;
    bool hasOciList = false;
    std::vector<SavedImage> all = {};
};

// A sum that lies beside the archive.
struct Checksum {
    // UTF-8.
    std::string file;
    // In lower case; empty when the file has none for this archive.
    std::string expected;
    // Empty unless the whole archive was read.
    std::string found;
};

struct ArchiveFacts {
    ArchiveKind kind = ArchiveKind::missing;
    std::uintmax_t fileBytes = 0;
    Extent extent = Extent::nothing;
    Damage damage = Damage::none;
    // Of the damage, in the words of the library that met it.
    std::string reason = {};
    // What was read.
    std::uintmax_t entries = 0;
    // What the tar archive takes unpacked: read to the end, or as the packed file says itself. Nothing when that is
    // not known.
    std::optional<std::uintmax_t> unpackedBytes = {};
    // What its files take, holes included.
    std::uintmax_t contentBytes = 0;
    // Whether the mark is there that ends a tar archive; only known of a whole one.
    bool endMarked = true;
    // The first path that leads through "..", and whether one leads out of the archive's own root.
    std::string upwardPath = {};
    bool leadsOutside = false;
    RootFileSystem root = {};
    SavedImages images = {};
    std::optional<Checksum> checksum = {};

    bool whole() const { return extent == Extent::whole; }
};

} // namespace kelpctl
