#include "load_system.h"

#include <dlfcn.h>
#include <malloc.h>

#include <filesystem>
#include <iterator>
#include <stdexcept>

namespace {

std::int64_t entriesOf(const char* folder)
{
    return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

} // namespace

LoadedLibrary::LoadedLibrary(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (handle_ == nullptr) {
        throw std::runtime_error(dlerror()); // glibc keeps one text for each thread
    }
}

LoadedLibrary::~LoadedLibrary()
{
    dlclose(handle_);
}

void* LoadedLibrary::symbol(const char* name) const
{
    return dlsym(handle_, name);
}

bool isLoaded(const std::string& path)
{
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr) {
        return false;
    }
    dlclose(handle);
    return true;
}

Holdings holdings()
{
    const struct mallinfo2 memory = mallinfo2();
    return {entriesOf("/proc/self/fd"), entriesOf("/proc/self/task"),
            static_cast<std::int64_t>(memory.uordblks + memory.hblkhd)};
}
