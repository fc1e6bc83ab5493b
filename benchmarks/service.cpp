#include "contenders.h"

#include "host/process.h"

namespace benchmarks {

Captured runService(const Arguments& arguments, const Sizes& /*expected*/)
{
    const orb::process::detail::RunResult result = orb::process::detail::run(arguments);
    return {result.status, {result.standardOutput.size(), result.standardError.size()}};
}

} // namespace benchmarks
