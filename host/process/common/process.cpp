#include "host/process.h"

#include "arguments.h"
#include "program_not_found.h"
#include "run_program.h"

#include <atomic>
#include <functional>

namespace orb::process::detail {

namespace {

// What shells report.
constexpr std::int32_t notFoundStatus = 127;

std::atomic<RunObserver*> currentObserver{nullptr};

RunResult runOrReportMissing(const std::vector<std::string>& arguments, const Environment& environment,
                             const std::string& workingDir, const RunOptions& options)
{
    try {
        return runProgram(arguments, environment, workingDir, options);
    } catch (const ProgramNotFound& failure) {
        return {notFoundStatus, {}, std::string(failure.what()) + "\n", true};
    }
}

RunResult runObserved(RunObserver& observer, const std::vector<std::string>& arguments, const Environment& environment,
                      const std::string& workingDir, const RunOptions& options)
{
    RunOptions observed = options;
    observer.starting(arguments, observed);
    const std::function<bool()> handler = observed.terminationHandler();
    observed.setTerminationHandler(
        [&observer, &handler] { return observer.shouldTerminate() || (handler && handler()); });
    try {
        RunResult result = runOrReportMissing(arguments, environment, workingDir, observed);
        observer.ended(arguments, &result);
        return result;
    } catch (...) {
        observer.ended(arguments, nullptr);
        throw;
    }
}

} // namespace

RunObserver::~RunObserver() = default;

RunObserver* observeRuns(RunObserver* observer) noexcept
{
    return currentObserver.exchange(observer);
}

RunResult run(const std::vector<std::string>& arguments, const Environment& environment, const std::string& workingDir,
              bool detach, const RunOptions& options)
{
    checkArguments(arguments, environment, workingDir);
    if (detach) {
        startDetached(arguments, environment, workingDir);
        return {};
    }
    if (RunObserver* const observer = currentObserver.load()) {
        return runObserved(*observer, arguments, environment, workingDir, options);
    }
    return runOrReportMissing(arguments, environment, workingDir, options);
}

std::int32_t runAttached(const std::vector<std::string>& arguments, const Environment& environment,
                         const std::string& workingDir)
{
    checkArguments(arguments, environment, workingDir);
    return runProgramAttached(arguments, environment, workingDir);
}

} // namespace orb::process::detail
