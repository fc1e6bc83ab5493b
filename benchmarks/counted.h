// The instructions between callgrind's switches.
#pragma once

#include <functional>

namespace benchmarks {

// Does the work twice. Callgrind counts the second time, since the first fills caches and binds symbols.
void countSecondTurn(const std::function<void()>& work);

} // namespace benchmarks
