#include "archive/gzip.h"

#include <new>
#include <string>

#include <zlib.h>

namespace kelpctl {
namespace {

constexpr std::size_t blockSize = 256UL * 1024;
constexpr char memberStart = '\x1f';
// The largest window, and gzip's own header and trailer.
constexpr int gzipWindow = 15 + 16;

class Gzip : public Unpacking {
public:
    explicit Gzip(PackedBytes& packed) : packed_(packed), buffer_(blockSize, '\0')
    {
        if (inflateInit2(&stream_, gzipWindow) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Gzip() override { inflateEnd(&stream_); }
    Gzip(const Gzip&) = delete;
    Gzip& operator=(const Gzip&) = delete;

    std::string_view next() override
    {
        stream_.next_out = bytesOf(buffer_.data());
        stream_.avail_out = blockSize;
        while (!done_ && stream_.avail_out > 0) {
            step();
        }
        return {buffer_.data(), blockSize - stream_.avail_out};
    }

private:
    static unsigned char* bytesOf(char* text) { return reinterpret_cast<unsigned char*>(text); }

    // False at the end of the file.
    bool refill()
    {
        if (stream_.avail_in == 0) {
            block_ = packed_.next();
            stream_.next_in = bytesOf(const_cast<char*>(block_.data())); // zlib only reads it
            stream_.avail_in = static_cast<unsigned int>(block_.size());
        }
        return stream_.avail_in > 0;
    }

    void step()
    {
        const bool more = refill();
        if (betweenMembers_) {
            done_ = !more || static_cast<char>(*stream_.next_in) != memberStart;
            betweenMembers_ = false;
            return;
        }
        if (!more) {
            throw Unreadable(Damage::cutOff, "the gzip data ends too early");
        }
        const int result = inflate(&stream_, Z_NO_FLUSH);
        if (result == Z_STREAM_END) {
            inflateReset(&stream_);
            betweenMembers_ = true;
        } else if (result == Z_MEM_ERROR) {
            throw std::bad_alloc();
        } else if (result != Z_OK) {
            throw Unreadable(Damage::broken,
                             std::string("gzip: ") + (stream_.msg != nullptr ? stream_.msg : "no data"));
        }
    }

    PackedBytes& packed_;
    std::string buffer_;
    std::string_view block_;
    z_stream stream_{};
    bool betweenMembers_ = false;
    bool done_ = false;
};

} // namespace

std::unique_ptr<Unpacking> unpackGzip(PackedBytes& packed)
{
    return std::make_unique<Gzip>(packed);
}

} // namespace kelpctl
