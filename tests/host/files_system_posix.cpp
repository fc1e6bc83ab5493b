#include "files_system.h"

#include <utility>

Link::Link(const std::string& text, std::filesystem::path path) : path_(std::move(path))
{
    std::filesystem::create_symlink(text, path_);
}

Link::~Link()
{
    std::filesystem::remove(path_);
}

void makeFolders(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
}
