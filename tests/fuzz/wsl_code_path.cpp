// The code path in what wsl.exe prints: whatever is found stands in the text, and a next step can be named for it.
#include "fuzz.h"

#include "next_steps.h"

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
    fuzz::require(!kelpctl::nextStep("WSL_CANNOT_IMPORT_TAR_FILE", path).empty(), "there is a next step");
    return 0;
}
