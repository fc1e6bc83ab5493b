#include "set_policies.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

std::filesystem::path file()
{
    return std::filesystem::path(std::getenv("WSL_STAND_IN_STATE")) / "policies";
}

} // namespace

SetPolicies::SetPolicies(const std::map<std::string, unsigned>& policies) : policies_(policies)
{
    if (std::getenv("WSL_STAND_IN_STATE") == nullptr) {
        state_.emplace("WSL_STAND_IN_STATE", folder_.path().string());
    }
    std::filesystem::create_directories(file().parent_path());
    std::ofstream stream(file());
    for (const auto& [name, value] : policies_) {
        stream << name << ' ' << value << '\n';
    }
}

SetPolicies::~SetPolicies()
{
    std::filesystem::remove(file());
}
