#include "terminal/policies.h"

#include "host/environment.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace kelpctl {

// The stand-in of WSL keeps them beside its registry: a line for each.
std::vector<Policy> wslPolicies()
{
    const std::filesystem::path folder = foundation::core::env::variable("WSL_STAND_IN_STATE").value_or("");
    std::ifstream file(folder / "policies");
    std::vector<Policy> all;
    for (Policy policy; file >> policy.name >> policy.value;) {
        all.push_back(policy);
    }
    std::sort(all.begin(), all.end(), [](const Policy& one, const Policy& other) { return one.name < other.name; });
    return all;
}

} // namespace kelpctl
