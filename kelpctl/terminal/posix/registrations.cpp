#include "terminal/registrations.h"

#include "host/environment.h"

#include <fstream>
#include <iomanip>
#include <sstream>

namespace kelpctl {

// There is no WSL here but a stand-in of it, for tests and trials, which keeps in a file what Windows keeps in the
// registry: a line for the default, then one for each distribution.
std::vector<Registration> registrations()
{
    constexpr int versionWithDisk = 2;
    const std::filesystem::path folder = foundation::core::env::variable("WSL_STAND_IN_STATE").value_or("");
    std::ifstream file(folder / "registry");
    std::string line;
    std::getline(file, line);
    std::vector<Registration> all;
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        Registration registration;
        std::string state;
        std::string identifier;
        int version = 0;
        std::string folderOfDisk;
        if (fields >> registration.name >> state >> identifier >> version >> std::quoted(folderOfDisk)) {
            registration.installed = state == "Installed";
            registration.disk = version == versionWithDisk ? std::filesystem::path(folderOfDisk) / "ext4.vhdx"
                                                           : std::filesystem::path();
            all.push_back(registration);
        }
    }
    return all;
}

// The stand-in has one registry for all; the file beside it, an account and a name a line, stands for others.
std::vector<OthersRegistration> registrationsOfOthers()
{
    const std::filesystem::path folder = foundation::core::env::variable("WSL_STAND_IN_STATE").value_or("");
    std::ifstream file(folder / "others");
    std::vector<OthersRegistration> all;
    for (OthersRegistration each; file >> each.account >> each.name;) {
        all.push_back(each);
    }
    return all;
}

} // namespace kelpctl
