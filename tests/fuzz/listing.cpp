// The listing of distributions: whatever wsl.exe prints.
#include "fuzz.h"

#include "wsl.h"

#include <algorithm>

namespace {

orb::process::detail::RunResult answer(const std::vector<std::string>& arguments, std::string_view listing)
{
    if (arguments.front() == "where") {
        return {0, "C:\\wsl.exe\r\n", {}};
    }
    return arguments.back() == "-v" ? orb::process::detail::RunResult{}
                                    : orb::process::detail::RunResult{0, std::string(listing), {}};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view listing = fuzz::textOf(data, size);
    fuzz::setRunner([listing](const std::vector<std::string>& arguments) { return answer(arguments, listing); });
    const std::vector<std::string> names = orb::lvm::detail::getDistros(size % 2 == 0);
    std::string text(listing);
    std::erase(text, '\0');
    fuzz::require(names == fuzz::streamWords(text), "names are the words of the text without its zero bytes");
    return 0;
}
