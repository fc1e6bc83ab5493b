# Builds a host for Windows on Linux: "cmake --toolchain mingw-w64.cmake -D BOOST_ROOT=FOLDER ...", where FOLDER/include
# holds Boost's headers and none of Linux: not /usr, but for instance a folder whose include/boost is a link to
# /usr/include/boost.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# The POSIX flavour: the package's runtime DLLs are of this kind.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# The folder may hold Boost as it was unpacked or built, without CMake files that know where its headers are.
set(Boost_NO_BOOST_CMAKE ON)
