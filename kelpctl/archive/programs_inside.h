// The programs of a root file system, and where its links to them lead.
#pragma once

#include "archive/entries.h"
#include "archive/facts.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace kelpctl {

// As many of a program's first bytes as tell its processor.
inline constexpr std::size_t programHeadSize = 20;

// The processor that a program is for, as Docker calls it; empty when it is no program of Linux.
std::string processorOfProgram(std::string_view head);

// Keeps what is in the folders of programs, so much of it as an honest archive has.
class ProgramsInside {
public:
    // Whether the entry at this path is one to be kept.
    static bool concerns(const std::string& path, EntryType type);

    // A later entry of the same path takes the place of an earlier one, as it does when the archive is unpacked.
    void take(const std::string& path, const Entry& entry, std::string_view head);

    struct Found {
        ShellState state = ShellState::missing;
        std::string processor = {};
    };
    // What is at the path, links followed.
    Found find(const std::string& path) const;

private:
    struct Node {
        EntryType type = EntryType::other;
        std::string target;
        std::string processor;
    };

    std::map<std::string, Node> nodes_;
    bool full_ = false;
};

} // namespace kelpctl
