# What MSVC's programs need beside them: vcpkg's DLLs, as the libraries import them, and the compiler's own.
install(CODE "set(boost_folder \"$<TARGET_FILE_DIR:Boost::log>\")
set(ours \"$<TARGET_FILE:korvane_host>\" \"$<TARGET_FILE:zqorb_lvm>\")
set(program \"$<TARGET_FILE:kelpctl>\")
set(program_dir \"${program_dir}\")")
install(CODE [[
file(GET_RUNTIME_DEPENDENCIES EXECUTABLES ${program} LIBRARIES ${ours} DIRECTORIES ${boost_folder} RESOLVED_DEPENDENCIES_VAR found
    PRE_EXCLUDE_REGEXES "^api-ms-" "^ext-ms-" "^msvcp" "^vcruntime" "^libkorvane_host" "^libzqorb_lvm"
    POST_EXCLUDE_REGEXES "[Ss]ystem32")
file(INSTALL ${found} DESTINATION ${CMAKE_INSTALL_PREFIX}/${program_dir})
]])

set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION ${program_dir})
include(InstallRequiredSystemLibraries)
