// What is behind a failure of wsl.exe, by the code path that it prints: contexts from the outside in, then the code
// ("Wsl/Service/RegisterDistro/E_INVALIDARG"). Words around it are in the user's language, the path never is.
#pragma once

#include "failure/advice_table.h"

#include <span>
#include <string>
#include <string_view>

namespace kelpctl {

// The last path in a text, since wsl.exe tells its failure last; one that was cut, too. Empty when there is none.
std::string wslCodePath(std::string_view text);

// What wsl.exe was doing, as far as the meaning of a path depends on it.
enum class WslWork { import, other };

// The key of the cause's advice; WSL_CODE_UNKNOWN for a path that has no row below; empty when the row says that wsl.exe's
// own sentence tells all that there is, and for no path at all.
AdviceKey causeOfWslPath(std::string_view path, WslWork work);

// Which paths a row is about.
enum class Reach {
    any,
    // Those of an import.
    import,
    // Those of an import, of what wsl.exe opens itself: it was not with its service yet.
    archive,
};

// A row holds for a path that has one of the contexts and ends with one of the codes; none named means any. Codes are
// named as today's wsl.exe names them. An empty cause is a decision, too.
struct WslCause {
    std::string_view contexts;
    std::string_view codes;
    AdviceKey cause;
    Reach reach = Reach::any;
};

// The first row that holds decides. In a path with a context that is not known only rows without contexts count.
std::span<const WslCause> wslCauses();

} // namespace kelpctl
