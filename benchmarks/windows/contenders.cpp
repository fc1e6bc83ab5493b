#include "contenders.h"

namespace benchmarks {

// Debian packages no process library for Windows.
std::vector<Contender> contenders()
{
    return {{floorName, runFloor}, {serviceName, runService}};
}

} // namespace benchmarks
