// The entries of a tar archive, one after the other.
#pragma once

#include "archive/library.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelpctl {

enum class EntryType { file, folder, link, hardLink, other };

struct Entry {
    EntryType type = EntryType::other;
    // As it is written there; bytes that may be no text.
    std::string path;
    // Of either kind of link.
    std::string target;
    // Of its content, holes included.
    std::uintmax_t size = 0;
};

class Entries {
public:
    // `next` gives the archive's bytes, a block at a time, empty at the end.
    explicit Entries(std::function<std::string_view()> next);

    // The next entry, nothing at the end. Throws Unreadable.
    std::optional<Entry> next();
    // So many of the first bytes of its content, or all that there are. Throws Unreadable.
    std::string content(std::size_t length);

private:
    std::string_view pull();

    std::function<std::string_view()> next_;
    // How much a header may take until it is no honest one any more: what describes an entry is held in memory.
    std::uintmax_t allowance_ = 0;
    ArchiveLibrary library_;
    bool opened_ = false;
};

} // namespace kelpctl
