#include "job.h"

#include "system_error.h"

namespace orb::process::detail {

using foundation::core::system::Handle;
using foundation::core::system::lastError;

Handle makeJob()
{
    Handle job(CreateJobObjectW(nullptr, nullptr));
    if (!job) {
        throw lastError("cannot create a job");
    }
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_BREAKAWAY_OK;
    if (SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits) == FALSE) {
        throw lastError("cannot prepare a job");
    }
    return job;
}

} // namespace orb::process::detail
