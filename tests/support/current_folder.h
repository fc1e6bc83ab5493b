// While it lives, the current folder is this one.
#pragma once

#include <filesystem>

class CurrentFolder {
public:
    explicit CurrentFolder(const std::filesystem::path& folder) : before_(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~CurrentFolder() { std::filesystem::current_path(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    std::filesystem::path before_;
};
