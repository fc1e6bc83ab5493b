// What an archive holds, gathered entry by entry.
#pragma once

#include "archive/entries.h"
#include "archive/facts.h"
#include "archive/programs_inside.h"
#include "archive/saved_images.h"

#include <cstddef>
#include <string>

namespace kelpctl {

class Contents {
public:
    // How many of the first bytes of the entry's file are wanted; none of most.
    static std::size_t wanted(const Entry& entry);
    void take(const Entry& entry, const std::string& content);

    // What all entries so far amount to.
    void tell(ArchiveFacts& facts) const;

private:
    void keep(const std::string& path, const std::string& content);

    std::uintmax_t entries_ = 0;
    std::uintmax_t bytes_ = 0;
    std::string upwardPath_;
    bool leadsOutside_ = false;
    bool hasEtc_ = false;
    bool imageMarked_ = false;
    ProgramsInside programs_;
    // Documents and settings, by path.
    Documents documents_;
    std::size_t documentBytes_ = 0;
};

} // namespace kelpctl
