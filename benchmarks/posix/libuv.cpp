#include "peers.h"

#include <array>
#include <stdexcept>

#include <uv.h>

namespace benchmarks {

namespace {

// A program that uses libuv keeps its loop.
class Loop {
public:
    Loop() { ::uv_loop_init(&loop_); }
    ~Loop() { ::uv_loop_close(&loop_); }
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    uv_loop_t* get() { return &loop_; }

private:
    uv_loop_t loop_{};
};

struct Reader {
    uv_pipe_t pipe{};
    std::string text;
    std::array<char, 65536> buffer; // is read into
};

void provideBuffer(uv_handle_t* handle, std::size_t /*suggested*/, uv_buf_t* buffer)
{
    auto& reader = *static_cast<Reader*>(handle->data);
    *buffer = ::uv_buf_init(reader.buffer.data(), static_cast<unsigned>(reader.buffer.size()));
}

void keep(uv_stream_t* stream, ssize_t size, const uv_buf_t* buffer)
{
    if (size > 0) {
        static_cast<Reader*>(stream->data)->text.append(buffer->base, static_cast<std::size_t>(size));
    } else if (size < 0) {
        ::uv_close(reinterpret_cast<uv_handle_t*>(stream), nullptr);
    }
}

void noteEnd(uv_process_t* process, std::int64_t status, int /*signal*/)
{
    *static_cast<std::int32_t*>(process->data) = static_cast<std::int32_t>(status);
    ::uv_close(reinterpret_cast<uv_handle_t*>(process), nullptr);
}

uv_stream_t* open(Reader& reader, uv_loop_t* loop)
{
    ::uv_pipe_init(loop, &reader.pipe, 0);
    reader.pipe.data = &reader;
    return reinterpret_cast<uv_stream_t*>(&reader.pipe);
}

} // namespace

Captured runLibuv(const Arguments& arguments, const Sizes& /*expected*/)
{
    thread_local Loop loop;
    Captured captured;
    Reader output;
    Reader error;
    const auto capture = static_cast<uv_stdio_flags>(UV_CREATE_PIPE | UV_WRITABLE_PIPE);
    std::array<uv_stdio_container_t, 3> streams{};
    streams[0].flags = UV_IGNORE;
    streams[1].flags = capture;
    streams[1].data.stream = open(output, loop.get());
    streams[2].flags = capture;
    streams[2].data.stream = open(error, loop.get());
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str())); // libuv takes it so and does not write
    }
    pointers.push_back(nullptr);
    uv_process_options_t options{};
    options.file = pointers[0];
    options.args = pointers.data();
    options.stdio = streams.data();
    options.stdio_count = static_cast<int>(streams.size());
    options.exit_cb = noteEnd;
    uv_process_t process{};
    process.data = &captured.status;
    if (::uv_spawn(loop.get(), &process, &options) != 0) {
        throw std::runtime_error("libuv cannot start the program");
    }
    ::uv_read_start(streams[1].data.stream, provideBuffer, keep);
    ::uv_read_start(streams[2].data.stream, provideBuffer, keep);
    ::uv_run(loop.get(), UV_RUN_DEFAULT);
    captured.sizes = {output.text.size(), error.text.size()};
    return captured;
}

} // namespace benchmarks
