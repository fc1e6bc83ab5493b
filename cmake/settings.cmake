# How our own code is compiled. Third-party code never links these targets.

# A git checkout is a developer's: warnings are errors there. A source archive builds with any compiler's warnings.
if(EXISTS ${PROJECT_SOURCE_DIR}/.git)
    set(developer_default ON)
else()
    set(developer_default OFF)
endif()
option(ZQORB_DEVELOPER "Treat warnings as errors" ${developer_default})
option(ZQORB_FUZZ "Build the fuzz targets (clang, with ZQORB_SANITIZE)" OFF)
set(ZQORB_SANITIZE "" CACHE STRING "Sanitizers, as the compiler's -fsanitize takes them")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

# The installed tree may be moved: programs find their libraries from where they are themselves.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# Where what differs between the systems lies, and what Wine calls the root of the Linux machine.
if(WIN32)
    set(platform windows)
else()
    set(platform posix)
endif()
if(WIN32 AND NOT CMAKE_HOST_WIN32)
    set(root "Z:")
else()
    set(root "")
endif()

find_package(Threads REQUIRED)
find_package(Boost 1.81 REQUIRED COMPONENTS log filesystem)

# Sanitizers must cover every object of a program, third-party ones included.
if(ZQORB_SANITIZE)
    # The code that sanitizers add makes the compiler see uninitialised variables where there are none.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    add_compile_options(-fsanitize=${ZQORB_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ZQORB_SANITIZE})
endif()

# What a release build makes names neither the folders nor the hour of its making: the same sources give the same bytes.
if(NOT MSVC)
    set(nameless_folders ${PROJECT_SOURCE_DIR}=. ${PROJECT_BINARY_DIR}=build)
    if(ZQORB_BOOST_ROOT)
        list(APPEND nameless_folders ${ZQORB_BOOST_ROOT}=boost)
    endif()
    foreach(folder ${nameless_folders})
        add_compile_options($<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:CXX>>:-ffile-prefix-map=${folder}>)
    endforeach()
endif()
if(MINGW)
    add_link_options(-Wl,--no-insert-timestamp)
endif()
# The C library's checks need optimised code, and are not for what sanitizers check.
if(NOT MSVC AND NOT ZQORB_SANITIZE)
    string(APPEND CMAKE_CXX_FLAGS_RELEASE " -D_FORTIFY_SOURCE=2")
endif()

add_library(settings INTERFACE)
if(WIN32)
    target_compile_definitions(settings INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
    if(MSVC)
        # The gateways are extern "C" and throw, which CMake's own /EHsc takes to be impossible.
        string(REPLACE /EHsc /EHs CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
        target_compile_options(settings INTERFACE /utf-8 /permissive- /Zc:__cplusplus /guard:cf)
        target_link_options(settings INTERFACE /guard:cf)
        # Boost is linked as CMake found it, not by the name that its headers would ask the linker for. getenv is what
        # the interface promises to read the environment with.
        target_compile_definitions(settings INTERFACE BOOST_ALL_NO_LIB _CRT_SECURE_NO_WARNINGS)
    endif()
    if(MINGW)
        # Whatever the linker's own defaults are.
        target_link_options(settings INTERFACE -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
        # The stack protector's functions, from the static library: one DLL less to ship.
        target_link_libraries(settings INTERFACE -l:libssp.a)
    endif()
else()
    target_link_options(settings INTERFACE -Wl,-z,defs -Wl,-z,relro,-z,now -Wl,-z,noexecstack)
endif()
if(NOT MSVC)
    target_compile_options(settings INTERFACE -fvisibility=hidden -fvisibility-inlines-hidden -fstack-protector-strong)
endif()
# Sanitized and debug programs check what the standard library assumes.
target_compile_definitions(settings INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

# Keeps what the file does not name inside the library, as a DLL does. `code` is the target that compiles it. The debug
# information tells what the rest looks like; packages do not have it.
function(limit_exports target code file)
    if(NOT WIN32)
        target_compile_options(${code} PRIVATE $<$<CONFIG:Release>:-g>)
        # The linker's own identifier of a library depends on the debug information, and that on the compiler cache.
        target_link_options(${target} PRIVATE -Wl,--build-id=none)
        target_link_options(${target} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/${file})
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    endif()
endfunction()

add_library(warnings INTERFACE)
if(MSVC)
    # 4251: hosts use the same C++ library as ours, or find_package refuses them.
    target_compile_options(warnings INTERFACE /W4 /wd4251 $<$<BOOL:${ZQORB_DEVELOPER}>:/WX>)
else()
    target_compile_options(warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow
        -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wimplicit-fallthrough
        $<$<BOOL:${ZQORB_DEVELOPER}>:-Werror>)
endif()

# A Windows program finds its DLLs beside itself, in the build folder as in the installed tree.
if(MINGW)
    set(runtime_dlls)
    foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
            OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE ${file})
            set(file ${CMAKE_FIND_ROOT_PATH}/lib/${name})
        endif()
        list(APPEND runtime_dlls ${file})
    endforeach()
    # What Boost.Log needs; tests/package/check-imports finds one too many or too few.
    foreach(name log filesystem thread)
        file(GLOB file ${ZQORB_BOOST_ROOT}/lib/libboost_${name}.dll)
        list(APPEND runtime_dlls ${file})
    endforeach()
    file(COPY ${runtime_dlls} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
endif()
