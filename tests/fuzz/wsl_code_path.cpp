// The code path in what wsl.exe prints: whatever is found stands in the text, and a code that is known has advice.
#include "fuzz.h"

#include "failure/advice.h"

#include <algorithm>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    const std::string path = kelpctl::wslCodePath(text);
    if (!path.empty()) {
        fuzz::require(text.find(path) != std::string_view::npos, "a path stands in the text");
        fuzz::require(path.starts_with("Wsl/"), "a path begins with Wsl/");
        fuzz::require(std::none_of(path.begin(), path.end(), [](char c) { return c == ' ' || c == '\n' || c == '\r'; }),
                      "a path has no blanks");
    }
    const kelpctl::AdviceKey cause = kelpctl::causeOfWslCode(path);
    fuzz::require(cause.empty() || kelpctl::AdviceKey(kelpctl::adviceFor(cause)) == cause, "a known code has advice");
    return 0;
}
