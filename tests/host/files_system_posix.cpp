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

const char* const folderGiven = "/srv/gr\xc3\xbc\xc3\x9f"
                                "e//";
const std::u16string folderKept = u"/srv/gr\u00fc\u00dfe";
const std::u16string rootFolder = u"/";

void makeFolders(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
}
