#include "contenders.h"

#include "host/process.h"

namespace benchmarks {

Captured runService(const Arguments& arguments)
{
    orb::process::detail::RunResult result = orb::process::detail::run(arguments);
    return {result.status, std::move(result.standardOutput), std::move(result.standardError)};
}

} // namespace benchmarks
