// The system's errors as exceptions. Their text is the system's own, in the user's language, as UTF-8: the standard
// library gives it in the ANSI code page, and not at all when it has a place for a name in it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include <windows.h>

namespace foundation::core::system {

// What the system says of a code, without the line end.
std::string messageOf(DWORD code);

// Whether the code says that a path leads nowhere.
bool meansMissing(DWORD code);

class SystemError : public std::system_error {
public:
    SystemError(DWORD code, const std::string& failure);
    const char* what() const noexcept override { return text_.what(); }

private:
    // Its copies cannot fail.
    std::runtime_error text_;
};

class FileSystemError : public std::filesystem::filesystem_error {
public:
    FileSystemError(const char* operation, const std::filesystem::path& path, DWORD code);
    const char* what() const noexcept override { return text_.what(); }

private:
    std::runtime_error text_;
};

// To be called before anything else can change the last error.
SystemError lastError(const char* failure);

} // namespace foundation::core::system
