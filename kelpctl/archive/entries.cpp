#include "archive/entries.h"

#include <limits>
#include <utility>

#include <archive_entry.h>

namespace kelpctl {
namespace {

// Names, attributes and maps of holes of one entry are some kilobytes.
constexpr std::uintmax_t headerAllowance = 8UL * 1024 * 1024;
constexpr std::uintmax_t anyAmount = std::numeric_limits<std::uintmax_t>::max();

// A name that this computer's language does not have is only there as UTF-8.
std::string textOf(const char* narrow, const char* utf8)
{
    return narrow != nullptr ? narrow : utf8 != nullptr ? utf8 : "";
}

EntryType typeOf(archive_entry* entry)
{
    if (archive_entry_hardlink(entry) != nullptr || archive_entry_hardlink_utf8(entry) != nullptr) {
        return EntryType::hardLink;
    }
    switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
        return EntryType::file;
    case AE_IFDIR:
        return EntryType::folder;
    case AE_IFLNK:
        return EntryType::link;
    default:
        return EntryType::other;
    }
}

Entry entryOf(archive_entry* entry)
{
    Entry result;
    result.type = typeOf(entry);
    result.path = textOf(archive_entry_pathname(entry), archive_entry_pathname_utf8(entry));
    if (result.type == EntryType::hardLink) {
        result.target = textOf(archive_entry_hardlink(entry), archive_entry_hardlink_utf8(entry));
    } else if (result.type == EntryType::link) {
        result.target = textOf(archive_entry_symlink(entry), archive_entry_symlink_utf8(entry));
    }
    const la_int64_t size = archive_entry_size(entry);
    result.size = result.type == EntryType::file && size > 0 ? static_cast<std::uintmax_t>(size) : 0;
    return result;
}

} // namespace

Entries::Entries(std::function<std::string_view()> next) : next_(std::move(next)), library_([this] { return pull(); })
{
    archive_read_support_format_tar(library_.handle());
    archive_read_support_format_empty(library_.handle());
}

std::string_view Entries::pull()
{
    const std::string_view block = next_();
    if (block.size() > allowance_) {
        throw Unreadable(Damage::broken, "a header is longer than any honest one");
    }
    allowance_ -= allowance_ == anyAmount ? 0 : block.size();
    return block;
}

std::optional<Entry> Entries::next()
{
    allowance_ = anyAmount;
    if (std::exchange(opened_, true)) {
        library_.checked(archive_read_data_skip(library_.handle()));
    } else if (library_.open() < ARCHIVE_WARN) {
        throw Unreadable(Damage::noTar, "it is no tar archive");
    }
    allowance_ = headerAllowance;
    archive_entry* entry = nullptr;
    const int result = archive_read_next_header(library_.handle(), &entry);
    if (library_.checked(result) == ARCHIVE_RETRY) {
        throw Unreadable(Damage::broken, "the header of an entry is damaged");
    }
    return result == ARCHIVE_EOF ? std::nullopt : std::optional(entryOf(entry));
}

std::string Entries::content(std::size_t length)
{
    allowance_ = headerAllowance + length;
    std::string bytes(length, '\0');
    std::size_t count = 0;
    while (count < length) {
        const la_ssize_t got = archive_read_data(library_.handle(), bytes.data() + count, length - count);
        library_.checked(got < 0 ? static_cast<int>(got) : ARCHIVE_OK);
        if (got <= 0) {
            break;
        }
        count += static_cast<std::size_t>(got);
    }
    bytes.resize(count);
    return bytes;
}

} // namespace kelpctl
