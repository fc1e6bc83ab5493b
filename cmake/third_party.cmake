# Header-only libraries from Debian's packages. They are linked into a folder of their own, because a cross compiler
# must not see the rest of /usr/include.
function(add_header_library target header)
    cmake_path(GET header PARENT_PATH folder)
    find_path(${target}_DIR ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
    if(NOT ${target}_DIR)
        message(FATAL_ERROR "${header} was not found; scripts/install-packages installs it")
    endif()
    set(include_dir ${PROJECT_BINARY_DIR}/third_party/${target})
    file(MAKE_DIRECTORY ${include_dir})
    file(CREATE_LINK ${${target}_DIR}/${folder} ${include_dir}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${include_dir})
endfunction()

add_header_library(json nlohmann/json.hpp)
add_header_library(cli11 CLI/CLI.hpp)
