// Windows command lines: any line can be split, and what is joined comes back.
#include "fuzz.h"

#include <stdexcept>

namespace {

using namespace orb::process::detail;

void joinAndSplit(const std::vector<std::string>& arguments)
{
    std::string line;
    try {
        line = joinArguments(arguments);
    } catch (const std::invalid_argument&) {
        fuzz::require(arguments.front().find('"') != std::string::npos, "only a quote in a program name is refused");
        return;
    }
    fuzz::require(getRunArguments(line) == arguments, "arguments come back");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    joinAndSplit(fuzz::split(text, '\0'));
    const std::vector<std::string> arguments = getRunArguments(std::string(text));
    if (!arguments.empty()) {
        joinAndSplit(arguments);
    }
    return 0;
}
