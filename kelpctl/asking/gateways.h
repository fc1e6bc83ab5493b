// The library's three gateways, called the way the host's interpreter calls them.
#pragma once

#include <string>

namespace kelpctl {

// An empty archive means the installed one. Throws what the library throws.
void callSetup(const std::string& archive);
void callTeardown();
// 0 when WSL can be used, -3 when it cannot.
int callCheck();

} // namespace kelpctl
