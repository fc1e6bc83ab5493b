#include "archive/unpackers.h"

#include "archive/gzip.h"
#include "archive/library.h"

namespace kelpctl {
namespace {

class Plain : public Unpacking {
public:
    explicit Plain(PackedBytes& packed) : packed_(packed) {}
    std::string_view next() override { return packed_.next(); }

private:
    PackedBytes& packed_;
};

// xz, bzip2 and zstd.
class ByLibrary : public Unpacking {
public:
    explicit ByLibrary(PackedBytes& packed) : library_([&packed] { return packed.next(); })
    {
        archive_read_support_filter_xz(library_.handle());
        archive_read_support_filter_bzip2(library_.handle());
        archive_read_support_filter_zstd(library_.handle());
        archive_read_support_format_raw(library_.handle());
        archive_read_support_format_empty(library_.handle());
    }

    std::string_view next() override
    {
        if (!opened_) {
            opened_ = true;
            // What does not even begin to unpack counts as empty there, with an error that nobody asked for.
            const int result = library_.open();
            library_.checked(archive_errno(library_.handle()) == 0 ? result : ARCHIVE_FATAL);
            archive_entry* entry = nullptr;
            done_ = library_.checked(archive_read_next_header(library_.handle(), &entry)) == ARCHIVE_EOF;
        }
        const void* block = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        while (!done_ && size == 0) {
            done_ = library_.checked(archive_read_data_block(library_.handle(), &block, &size, &offset)) == ARCHIVE_EOF;
        }
        return done_ ? std::string_view() : std::string_view(static_cast<const char*>(block), size);
    }

private:
    ArchiveLibrary library_;
    bool opened_ = false;
    bool done_ = false;
};

} // namespace

std::unique_ptr<Unpacking> unpackingOf(ArchiveKind kind, PackedBytes& packed)
{
    switch (kind) {
    case ArchiveKind::tar:
        return std::make_unique<Plain>(packed);
    case ArchiveKind::gzip:
        return unpackGzip(packed);
    default:
        return std::make_unique<ByLibrary>(packed);
    }
}

} // namespace kelpctl
