// The last failure of a program, kept in the user's state folder for "kelpctl report".
#pragma once

#include "failure/report.h"
#include "terminal/mask.h"

#include <boost/json/value.hpp>

#include <optional>
#include <string>

namespace kelpctl {

// What must not be seen of this request and this computer: values given with "-e", what stands behind the options in
// AUX_DOCKER_ARGS, names and passwords in the addresses of Docker and of proxies, and how user and computer are called.
Mask maskFor(const Request& request);

// The variable's value with the names of its options only: "--label *** -e TOKEN=***".
std::string maskedDockerArguments(const std::string& value);

// Keeps it in the place of the one before, masked. A failure without a child program, and one of `exec`, whose program is
// nobody else's business, is not kept; nor is one when the folder cannot be written to.
void keepFailure(const Request& request, const Report& report) noexcept;

struct KeptFailure {
    boost::json::value told;
    // Bytes as the program printed them, but for what is masked.
    std::string output;
    std::string error;
};

// Nothing when none is kept, or what is there cannot be read.
std::optional<KeptFailure> keptFailure();

} // namespace kelpctl
