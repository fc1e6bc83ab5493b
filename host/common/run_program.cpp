#include "run_program.h"

#include "arguments.h"

namespace orb::process::detail {

namespace {

// What shells report.
constexpr std::int32_t notFoundStatus = 127;

} // namespace

ProgramNotFound::ProgramNotFound(const std::string& program)
    : std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), startFailure(program, {}))
{
}

RunResult run(const std::vector<std::string>& arguments, const Environment& environment, const std::string& workingDir,
              bool detach, const RunOptions& options)
{
    checkArguments(arguments, environment, workingDir);
    if (detach) {
        startDetached(arguments, environment, workingDir);
        return {};
    }
    try {
        return runProgram(arguments, environment, workingDir, options);
    } catch (const ProgramNotFound& failure) {
        return {notFoundStatus, {}, std::string(failure.what()) + "\n"};
    }
}

} // namespace orb::process::detail
