#include "load.h"

#include <stdexcept>

#include <windows.h>

namespace benchmarks {

void loadAndUnload(const char* file)
{
    const HMODULE library = LoadLibraryA(file);
    if (library == nullptr) {
        throw std::runtime_error("cannot load a library");
    }
    FreeLibrary(library);
}

} // namespace benchmarks
