# What we use that others wrote. Its code is compiled without our warnings.

# Header-only libraries from Debian's packages. They are linked into a folder of their own, because a cross compiler
# must not see the rest of /usr/include.
function(add_header_library target header)
    cmake_path(GET header PARENT_PATH folder)
    find_path(${target}_DIR ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
    if(NOT ${target}_DIR)
        message(FATAL_ERROR "${header} was not found; scripts/install-packages or vcpkg.json brings it")
    endif()
    if(CMAKE_HOST_WIN32)
        # vcpkg's folder has nothing else, and links take a right there that users do not have.
        set(include_dir ${${target}_DIR})
    else()
        set(include_dir ${PROJECT_BINARY_DIR}/third_party/${target})
        file(MAKE_DIRECTORY ${include_dir})
        file(CREATE_LINK ${${target}_DIR}/${folder} ${include_dir}/${folder} SYMBOLIC)
    endif()
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${include_dir})
endfunction()

add_header_library(cli11 CLI/CLI.hpp)

# Boost.JSON becomes part of what uses it: one library less to find and to ship, and sanitizers see its code. What says
# that Boost is shared does not hold for it, nor for what it takes from Boost.Container's headers.
add_library(json STATIC ${PROJECT_SOURCE_DIR}/cmake/boost_json.cpp)
target_link_libraries(json PUBLIC Boost::headers)
target_compile_definitions(json PUBLIC BOOST_JSON_STATIC_LINK BOOST_JSON_NO_LIB BOOST_CONTAINER_NO_LIB)
# It reads and writes a few kilobytes: its size counts more than its speed, and it compiles in two thirds of the time.
target_compile_options(json PRIVATE $<$<AND:$<CONFIG:Release>,$<NOT:$<CXX_COMPILER_ID:MSVC>>>:-Os>)

# libarchive, and zlib, which unpacks gzip. For Windows they are static, and so are the libraries behind them, which
# CMake does not look for by itself.
if(ZQORB_LIBARCHIVE_ROOT)
    add_library(libarchive INTERFACE)
    target_include_directories(libarchive SYSTEM INTERFACE ${ZQORB_LIBARCHIVE_ROOT}/include)
    target_compile_definitions(libarchive INTERFACE LIBARCHIVE_STATIC)
    foreach(name archive lzma zstd bz2 z)
        target_link_libraries(libarchive INTERFACE ${ZQORB_LIBARCHIVE_ROOT}/lib/lib${name}.a)
    endforeach()
else()
    find_package(LibArchive 3.6 REQUIRED)
    find_package(ZLIB REQUIRED)
    add_library(libarchive INTERFACE)
    target_link_libraries(libarchive INTERFACE LibArchive::LibArchive ZLIB::ZLIB)
endif()
