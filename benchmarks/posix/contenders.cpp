#include "contenders.h"

#include "peers.h"

namespace benchmarks {

std::vector<Contender> contenders()
{
    return {{floorName, runFloor},
            {serviceName, runService},
            {"libuv", runLibuv},
            {"Boost.Process v1", runBoostProcessV1},
            {"Boost.Process v2", runBoostProcessV2}};
}

} // namespace benchmarks
