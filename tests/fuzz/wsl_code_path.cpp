// The code path in what wsl.exe prints: whatever is found stands in the text, is found in itself, and has a decision.
#include "fuzz.h"

#include "failure/advice.h"
#include "failure/wsl_causes.h"

#include <algorithm>

namespace {

void requireAdvice(const std::string& path, kelpctl::WslWork work)
{
    const kelpctl::AdviceKey cause = kelpctl::causeOfWslPath(path, work);
    fuzz::require(cause.empty() || kelpctl::AdviceKey(kelpctl::adviceFor(cause)) == cause, "a cause has advice");
    fuzz::require(!path.empty() || cause.empty(), "no path has no cause");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    const std::string path = kelpctl::wslCodePath(text);
    if (!path.empty()) {
        fuzz::require(text.find(path) != std::string_view::npos, "a path stands in the text");
        fuzz::require(path.starts_with("Wsl/"), "a path begins with Wsl/");
        fuzz::require(std::none_of(path.begin(), path.end(), [](char c) { return c == ' ' || c == '\n' || c == '\r'; }),
                      "a path has no blanks");
        fuzz::require(kelpctl::wslCodePath(path) == path, "a path is found in itself");
    }
    requireAdvice(path, kelpctl::WslWork::import);
    requireAdvice(path, kelpctl::WslWork::other);
    // Of what is no path at all, too.
    kelpctl::causeOfWslPath(text, kelpctl::WslWork::import);
    return 0;
}
