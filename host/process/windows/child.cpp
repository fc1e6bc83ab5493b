#include "child.h"

#include "system_error.h"

namespace orb::process::detail {

using foundation::core::system::lastError;

Child::~Child()
{
    if (!hasExited()) {
        kill();
        WaitForSingleObject(process_.get(), INFINITE);
    }
}

bool Child::hasExited() const noexcept
{
    return WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
}

void Child::kill() const noexcept
{
    // What the system itself uses when a user ends a program.
    constexpr UINT killedStatus = 1;
    TerminateProcess(process_.get(), killedStatus);
}

ExitReport Child::wait()
{
    DWORD code = 0;
    if (WaitForSingleObject(process_.get(), INFINITE) != WAIT_OBJECT_0 ||
        GetExitCodeProcess(process_.get(), &code) == FALSE) {
        throw lastError("cannot learn how a program ended");
    }
    ExitReport report;
    report.status = static_cast<std::int32_t>(code);
    return report;
}

} // namespace orb::process::detail
