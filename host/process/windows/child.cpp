#include "child.h"

#include "job.h"
#include "system_error.h"

namespace orb::process::detail {

using foundation::core::system::lastError;

Child::Child(StartRequest request)
    : job_(request.ownGroup ? makeJob() : Handle()), process_(startProgram(std::move(request), job_.get()))
{
}

Child::~Child()
{
    if (!waited_) {
        kill();
        WaitForSingleObject(process_.get(), INFINITE);
    }
}

void Child::kill() const noexcept
{
    // What the system itself uses when a user ends a program.
    constexpr UINT killedStatus = 1;
    if (job_) {
        TerminateJobObject(job_.get(), killedStatus);
    } else {
        TerminateProcess(process_.get(), killedStatus);
    }
}

ExitReport Child::wait()
{
    DWORD code = 0;
    if (WaitForSingleObject(process_.get(), INFINITE) != WAIT_OBJECT_0 ||
        GetExitCodeProcess(process_.get(), &code) == FALSE) {
        throw lastError("cannot learn how a program ended");
    }
    waited_ = true;
    ExitReport report;
    report.status = static_cast<std::int32_t>(code);
    return report;
}

} // namespace orb::process::detail
