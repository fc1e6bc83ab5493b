// What a look for a program throws.
#pragma once

#include <string>
#include <system_error>

namespace orb::process::detail {

// The program does not exist. Any other failure to start one is a plain std::system_error.
class ProgramNotFound : public std::system_error {
public:
    explicit ProgramNotFound(const std::string& program);
};

} // namespace orb::process::detail
