// What the process service's tests need of the system they run on.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

// The arguments that make the test child do something.
std::vector<std::string> child(std::vector<std::string> arguments);

// A copy of the test child under this name (without an extension) in the folder. Gives its path.
std::filesystem::path plantChild(const std::filesystem::path& folder, const std::string& name);

// The folder of the running program.
std::filesystem::path programFolder();

// Between two entries of a PATH.
extern const char* const pathSeparator;

// How many descriptors or handles this process has open.
std::size_t openHandles();

// The most memory that this process has ever had in use, in bytes.
std::size_t peakMemory();

// A file of this size that was opened by a part of the host that does not mind who inherits it.
class ForeignFile {
public:
    static constexpr long long size = 54321;

    explicit ForeignFile(const std::filesystem::path& folder);
    ~ForeignFile();
    ForeignFile(const ForeignFile&) = delete;
    ForeignFile& operator=(const ForeignFile&) = delete;

    std::string handle() const;

private:
    std::ptrdiff_t handle_ = 0;
};

// While it lives, this process's standard output is the file and its standard input is empty.
class StandardStreams {
public:
    explicit StandardStreams(const std::filesystem::path& output);
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

private:
    std::vector<std::ptrdiff_t> before_;
};
