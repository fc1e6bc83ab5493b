# The Windows build on Linux: mingw-w64 with POSIX threads, with the Boost and the libarchive that
# scripts/boost-for-windows and scripts/libarchive-for-windows built.
# ZQORB_UCRT=ON takes the C runtime of present Windows in the place of msvcrt.dll.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZQORB_UCRT)
if(ZQORB_UCRT)
    set(triplet x86_64-w64-mingw32ucrt)
    set(threads "") # POSIX is all there is
else()
    set(triplet x86_64-w64-mingw32)
    set(threads -posix)
endif()
set(CMAKE_C_COMPILER ${triplet}-gcc${threads})
set(CMAKE_CXX_COMPILER ${triplet}-g++${threads})
set(CMAKE_RC_COMPILER ${triplet}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

if(NOT ZQORB_BOOST_ROOT)
    execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../scripts/boost-for-windows ${CMAKE_CXX_COMPILER}
        OUTPUT_VARIABLE ZQORB_BOOST_ROOT OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(ZQORB_BOOST_ROOT ${ZQORB_BOOST_ROOT} CACHE PATH "Boost for Windows: the folder of include/ and lib/")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZQORB_BOOST_ROOT)
list(APPEND CMAKE_FIND_ROOT_PATH ${ZQORB_BOOST_ROOT})
set(BOOST_ROOT ${ZQORB_BOOST_ROOT})
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_ARCHITECTURE "")

if(NOT ZQORB_LIBARCHIVE_ROOT)
    execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../scripts/libarchive-for-windows ${CMAKE_CXX_COMPILER}
        OUTPUT_VARIABLE ZQORB_LIBARCHIVE_ROOT OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(ZQORB_LIBARCHIVE_ROOT ${ZQORB_LIBARCHIVE_ROOT} CACHE PATH "libarchive for Windows: the folder of include/ and lib/")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZQORB_LIBARCHIVE_ROOT)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-test)
