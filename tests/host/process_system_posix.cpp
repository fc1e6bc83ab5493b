#include "process_system.h"

#include <iostream>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

const char* const pathSeparator = ":";

std::vector<std::string> child(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), TEST_CHILD);
    return arguments;
}

std::filesystem::path plantChild(const std::filesystem::path& folder, const std::string& name)
{
    std::filesystem::copy_file(TEST_CHILD, folder / name);
    return folder / name;
}

std::filesystem::path programFolder()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::size_t openHandles()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

std::size_t peakMemory()
{
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

ForeignFile::ForeignFile(const std::filesystem::path& folder)
{
    // Far from the numbers that a program's own files get.
    constexpr int farAway = 200;
    const std::filesystem::path file = folder / "foreign";
    const int opened = ::open(file.c_str(), O_RDWR | O_CREAT, 0600); // O_CLOEXEC is what it lacks on purpose
    handle_ = ::fcntl(opened, F_DUPFD, farAway);
    ::close(opened);
    std::filesystem::resize_file(file, size);
}

ForeignFile::~ForeignFile()
{
    ::close(static_cast<int>(handle_));
}

std::string ForeignFile::handle() const
{
    return std::to_string(handle_);
}

StandardStreams::StandardStreams(const std::filesystem::path& output)
{
    std::cout.flush();
    const int input = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO}) {
        before_.push_back(::fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
        ::dup2(stream == STDIN_FILENO ? input : file, stream);
    }
    ::close(input);
    ::close(file);
}

StandardStreams::~StandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO}) {
        const int before = static_cast<int>(before_[static_cast<std::size_t>(stream)]);
        ::dup2(before, stream);
        ::close(before);
    }
}
