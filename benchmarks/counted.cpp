#include "counted.h"

// Named on callgrind's command line, which starts and stops the counting there.
extern "C" [[gnu::noinline, gnu::visibility("default")]] void counted(const std::function<void()>& work)
{
    work();
}

namespace benchmarks {

void countSecondTurn(const std::function<void()>& work)
{
    work();
    counted(work);
}

} // namespace benchmarks
