#include "load.h"

#include <stdexcept>

#include <dlfcn.h>

namespace benchmarks {

void loadAndUnload(const char* file)
{
    void* const library = ::dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    ::dlclose(library);
}

} // namespace benchmarks
