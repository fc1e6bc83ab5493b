#include "archive/library.h"

#include <new>
#include <utility>

namespace kelpctl {

ArchiveLibrary::ArchiveLibrary(std::function<std::string_view()> next)
    : next_(std::move(next)), handle_(archive_read_new())
{
    if (handle_ == nullptr) {
        throw std::bad_alloc();
    }
}

int ArchiveLibrary::open()
{
    const int result = archive_read_open(handle(), this, nullptr, read, nullptr);
    rethrow();
    return result;
}

void ArchiveLibrary::rethrow()
{
    if (thrown_) {
        std::rethrow_exception(std::exchange(thrown_, nullptr));
    }
}

int ArchiveLibrary::checked(int result)
{
    rethrow();
    if (result < ARCHIVE_WARN) {
        const char* reason = archive_error_string(handle());
        throw Unreadable(ended_ ? Damage::cutOff : Damage::broken, reason != nullptr ? reason : "it cannot be read");
    }
    return result;
}

la_ssize_t ArchiveLibrary::read(::archive* handle, void* self, const void** block)
{
    auto& library = *static_cast<ArchiveLibrary*>(self);
    try {
        const std::string_view bytes = library.next_();
        library.ended_ = bytes.empty();
        *block = bytes.data();
        return static_cast<la_ssize_t>(bytes.size());
    } catch (...) {
        library.thrown_ = std::current_exception();
        archive_set_error(handle, ARCHIVE_FATAL, "ended");
        return -1;
    }
}

} // namespace kelpctl
