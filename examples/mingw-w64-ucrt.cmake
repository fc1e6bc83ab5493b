# Like mingw-w64.cmake, which says what BOOST_ROOT is, for the package whose name ends in "-ucrt".
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32ucrt-gcc)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32ucrt-g++)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32ucrt-windres)
# The folder may hold Boost as it was unpacked or built, without CMake files that know where its headers are.
set(Boost_NO_BOOST_CMAKE ON)
