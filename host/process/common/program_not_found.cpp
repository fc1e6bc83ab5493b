#include "program_not_found.h"

#include "arguments.h"

namespace orb::process::detail {

ProgramNotFound::ProgramNotFound(const std::string& program)
    : std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), startFailure(program, {}))
{
}

} // namespace orb::process::detail
