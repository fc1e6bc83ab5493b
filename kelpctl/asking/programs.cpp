#include "asking/programs.h"

#include <exception>

namespace kelpctl {
namespace {

namespace service = orb::process::detail;

Run runCaptured(const std::vector<std::string>& arguments, const service::Environment& environment,
                const std::string& folder)
{
    bool terminated = false;
    service::RunOptions options;
    options.setExitCallback(
        [&terminated](const service::ExitReport& report, void* /*userObject*/) { terminated = report.terminated; });
    const service::RunResult result = service::run(arguments, environment, folder, false, options);
    return runOf(arguments, result, endingOf(terminated));
}

} // namespace

Programs systemPrograms()
{
    return {runCaptured, [](const auto& arguments, const auto& environment) {
                return service::runAttached(arguments, environment);
            }};
}

Run ask(const Programs& programs, const std::vector<std::string>& arguments, const std::string& folder)
{
    try {
        return programs.run(arguments, {{"WSL_UTF8", "1"}, {"WSL_DISABLE_WARNINGS", "1"}}, folder);
    } catch (const std::exception& error) {
        return runThatDidNotStart(arguments, error.what());
    }
}

} // namespace kelpctl
