#include "registered.h"

#include <fstream>
#include <iomanip>

OwnRegistry::OwnRegistry() = default;

OwnRegistry::~OwnRegistry() = default;

Registered::Registered(const Entry& entry)
{
    state_.emplace("WSL_STAND_IN_STATE", folder_.path().string());
    std::ofstream file(folder_.path() / "registry");
    file << "the default\n"
         << entry.name << (entry.installed ? " Installed " : " Installing ") << "0123abcd "
         << (entry.ownMachine ? 2 : 1);
    if (entry.folder) {
        file << ' ' << std::quoted(entry.folder->string()) << " 0 0 0 0 0";
    }
    file << '\n';
}

Registered::~Registered() = default;

// A link to itself.
std::filesystem::path Registered::unreachableFolder() const
{
    const std::filesystem::path link = folder_.path() / "loop";
    std::filesystem::create_symlink(link, link);
    return link;
}
