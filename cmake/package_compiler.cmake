# Who built this, and which compilers may link it: what cmake/zqorb_lvm-config.cmake.in says to hosts.
zqorb_lvm_describe_compiler(package_compiler)

# The parts of a version that tell one C++ runtime from the next: GCC 12, MSVC 19.40.
string(REPLACE . ";" numbers ${CMAKE_CXX_COMPILER_VERSION})
list(GET numbers 0 package_compiler_version)
math(EXPR package_next_version "${package_compiler_version} + 1")
if(MSVC)
    list(GET numbers 1 minor)
    math(EXPR next_minor "${minor} + 1")
    set(package_next_version ${package_compiler_version}.${next_minor})
    string(APPEND package_compiler_version .${minor})
    set(package_runtime_dlls "msvcp140.dll and vcruntime140.dll with their companions")
    set(package_advice "Use MSVC and a configuration with that runtime.")
elseif(MINGW)
    set(package_runtime_dlls "libstdc++-6.dll, libgcc_s_seh-1.dll and libwinpthread-1.dll")
    if(package_compiler MATCHES UCRT)
        set(package_runtime "UCRT and POSIX threads (Debian: x86_64-w64-mingw32ucrt-g++; MSYS2: the environment UCRT64, \
not MINGW64)")
    else()
        set(package_runtime "msvcrt and POSIX threads (Debian: x86_64-w64-mingw32-g++-posix; MSYS2: the environment \
MINGW64, not UCRT64)")
    endif()
    set(package_advice "Use GCC ${package_compiler_version} or later for mingw-w64 with ${package_runtime}.")
else()
    set(package_advice "Take the package for this project's system.")
endif()
