// What the tests of files need of the system they run on.
#pragma once

#include <filesystem>
#include <string>

// While it lives, there is a symbolic link with this text at the path.
class Link {
public:
    Link(const std::string& text, std::filesystem::path path);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

// A folder with separators at its end, without them, and a root.
extern const char* const folderGiven;
extern const std::u16string folderKept;
extern const std::u16string rootFolder;

// Makes the folder with its parents, however long its path is.
void makeFolders(const std::filesystem::path& folder);
