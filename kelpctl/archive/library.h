// libarchive, with what C cannot do: its handle is freed, and exceptions pass through it.
#pragma once

#include "archive/packed_bytes.h"

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <archive.h>

namespace kelpctl {

class ArchiveLibrary {
public:
    // `next` gives the bytes that it reads, a block at a time, empty at the end.
    explicit ArchiveLibrary(std::function<std::string_view()> next);

    // What it is to recognise is switched on before it is opened.
    ::archive* handle() const { return handle_.get(); }
    // Throws what `next` has thrown; gives back whether it worked, as libarchive does.
    int open();

    // What a call gave back. Throws Unreadable when it failed, and what `next` has thrown meanwhile. Warnings, as about
    // names that this computer's language does not have, are none of ours.
    int checked(int result);
    // Whether it wanted more than there was.
    bool ended() const { return ended_; }

private:
    struct Free {
        void operator()(::archive* handle) const { archive_read_free(handle); }
    };

    void rethrow();
    static la_ssize_t read(::archive* handle, void* self, const void** block);

    std::function<std::string_view()> next_;
    std::exception_ptr thrown_;
    bool ended_ = false;
    std::unique_ptr<::archive, Free> handle_;
};

} // namespace kelpctl
