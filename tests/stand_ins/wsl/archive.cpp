#include "archive.h"

#include "disk.h"
#include "process.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace stand_in {
namespace {

struct Format {
    std::string_view beginning;
    const char* option;
    std::string_view name;
};

constexpr std::array formats = {
    Format{"\x1F\x8B", "--gzip", "gzip"},
    Format{"\xFD"
           "7zXZ",
           "--xz", "lzma"},
    Format{"BZh", "--bzip2", "bzip2"},
};

constexpr std::string_view unrecognized = "bsdtar: Error opening archive: Unrecognized archive format\n";

std::string readBeginning(const std::filesystem::path& file)
{
    std::string bytes(512, '\0');
    std::ifstream in(file, std::ios::binary);
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

const Format* findPacking(std::string_view beginning)
{
    for (const Format& format : formats) {
        if (beginning.starts_with(format.beginning)) {
            return &format;
        }
    }
    return nullptr;
}

// A header's checksum is the sum of its bytes with its own field taken as blanks. A block of zeros ends an archive.
bool isHeader(std::string_view block)
{
    if (block.size() < 512) {
        return false;
    }
    unsigned long sum = 8UL * ' ';
    unsigned long zeros = 0;
    for (std::size_t i = 0; i < block.size(); ++i) {
        const auto byte = static_cast<unsigned char>(block[i]);
        zeros += byte == 0 ? 1 : 0;
        sum += i >= 148 && i < 156 ? 0UL : byte;
    }
    const std::string field(block.substr(148, 8));
    return zeros == block.size() || std::strtoul(field.c_str(), nullptr, 8) == sum;
}

[[noreturn]] void becomeTar(const std::filesystem::path& archive, const std::filesystem::path& folder,
                            const char* option, int errors)
{
    const int null = ::open("/dev/null", O_RDWR);
    ::dup2(null, STDIN_FILENO);
    ::dup2(null, STDOUT_FILENO);
    ::dup2(errors, STDERR_FILENO);
    const std::array<const char*, 9> arguments = {"tar",          "-x", "--numeric-owner", "-p",  "-C",
                                                  folder.c_str(), "-f", archive.c_str(),   option};
    std::array<char*, 10> argv{};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        argv[i] = const_cast<char*>(arguments[i]);
    }
    std::array<char*, 3> environment = {const_cast<char*>("PATH=/usr/bin:/bin"), const_cast<char*>("LC_ALL=C"),
                                        nullptr};
    ::execve("/bin/tar", argv.data(), environment.data());
    ::_exit(127);
}

std::string readAll(int descriptor)
{
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

struct TarRun {
    bool done = false;
    std::string errors;
};

TarRun runTar(const std::filesystem::path& archive, const std::filesystem::path& folder, const char* option)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    const pid_t child = ::fork();
    if (child == 0) {
        becomeTar(archive, folder, option, ends[1]);
    }
    ::close(ends[1]);
    TarRun run;
    run.errors = readAll(ends[0]);
    ::close(ends[0]);
    run.done = waitForChild(child) == 0;
    return run;
}

} // namespace

std::string unpack(const std::filesystem::path& archive, const std::filesystem::path& folder)
{
    const std::string beginning = readBeginning(archive);
    if (beginning.empty()) {
        return {};
    }
    const Format* packing = findPacking(beginning);
    if (packing == nullptr && !isHeader(beginning)) {
        return std::string(unrecognized);
    }
    const TarRun run = runTar(archive, folder, packing == nullptr ? nullptr : packing->option);
    if (run.done) {
        return {};
    }
    if (run.errors.find("does not look like a tar archive") != std::string::npos) {
        return std::string(unrecognized);
    }
    if (run.errors.find("No space left on device") != std::string::npos) {
        return noSpace;
    }
    const std::string complaint =
        packing == nullptr ? "Truncated tar archive" : "truncated " + std::string(packing->name) + " input";
    return "bsdtar: " + complaint + "\nbsdtar: Error exit delayed from previous errors.\n";
}

} // namespace stand_in
