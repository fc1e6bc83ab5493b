// The program that benchmarks run.
//
//   benchmark_child exit          ends at once
//   benchmark_child one SIZE      prints SIZE bytes on standard output
//   benchmark_child two SIZE      prints half of SIZE on each stream, in turns
//   benchmark_child small SIZE    prints SIZE bytes on standard output, 1 to 64 at a time
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

// As much as the common tools write at a time.
constexpr std::size_t largePiece = std::size_t{128} * 1024;

void pour(std::size_t size, bool bothStreams)
{
    const std::string text(largePiece, 'x');
    bool toOutput = true;
    for (std::size_t left = size; left > 0;) {
        const std::size_t now = std::min(left, text.size());
        std::fwrite(text.data(), 1, now, toOutput ? stdout : stderr);
        left -= now;
        toOutput = !bothStreams || !toOutput;
    }
}

void trickle(std::size_t size)
{
    const std::string text(64, 'x');
    // Takes every value below 64, in an order that does not rise.
    std::size_t turn = 0;
    for (std::size_t left = size; left > 0;) {
        const std::size_t now = std::min(left, turn + 1);
        std::fwrite(text.data(), 1, now, stdout);
        left -= now;
        turn = (turn * 21 + 13) % 64;
    }
}

} // namespace

int main(int count, char* arguments[])
{
    // Each piece is one write to the system.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    std::setvbuf(stderr, nullptr, _IONBF, 0);
    const std::string_view mode = count > 1 ? arguments[1] : "";
    const std::size_t size = count > 2 ? std::stoul(arguments[2]) : 0;
    if (mode == "one" || mode == "two") {
        pour(size, mode == "two");
    } else if (mode == "small") {
        trickle(size);
    } else if (mode != "exit") {
        std::fputs("usage: benchmark_child exit | one SIZE | two SIZE | small SIZE\n", stderr);
        return 2;
    }
    return 0;
}
