# What kind of compiler this project uses, in words: two kinds that differ cannot link C++ to each other. The package
# has this file, and tells with it who may link what it holds.
function(zqorb_lvm_describe_compiler result)
    if(MSVC)
        # Containers of the debug library have other members, and each static runtime has a heap of its own.
        set(runtime "release runtime DLLs")
        if(DEFINED CMAKE_MSVC_RUNTIME_LIBRARY AND NOT CMAKE_MSVC_RUNTIME_LIBRARY MATCHES "DLL$")
            set(runtime "static runtime")
        elseif(CMAKE_BUILD_TYPE STREQUAL "Debug")
            set(runtime "debug runtime DLLs")
        endif()
        set(${result} "MSVC (${runtime})" PARENT_SCOPE)
    elseif(MINGW)
        set(source ${CMAKE_BINARY_DIR}/CMakeFiles/zqorb_lvm-compiler.cpp)
        file(WRITE ${source} "#include <_mingw.h>\n")
        separate_arguments(flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS}")
        # In English, whatever the user's language.
        execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${CMAKE_CXX_COMPILER} ${flags} -v -E -dM ${source}
            OUTPUT_VARIABLE macros ERROR_VARIABLE description)
        # Hosts and libraries with different C runtimes have different environments, files and locales.
        if(macros MATCHES "#define _UCRT[ \r\n]")
            set(c_library UCRT)
        else()
            set(c_library msvcrt)
        endif()
        string(REGEX MATCH "Thread model: ([a-z0-9]+)" thread_model "${description}")
        string(REPLACE GNU GCC compiler ${CMAKE_CXX_COMPILER_ID})
        set(${result} "${compiler} for mingw-w64 (${c_library}, ${CMAKE_MATCH_1} threads)" PARENT_SCOPE)
    else()
        set(${result} "one for ${CMAKE_SYSTEM_NAME}" PARENT_SCOPE)
    endif()
endfunction()
