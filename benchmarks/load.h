#pragma once

namespace benchmarks {

// Loads a library with everything that it needs, and lets go of it. Throws when it cannot be loaded.
void loadAndUnload(const char* file);

} // namespace benchmarks
