# The installed tree: bin/win64 (programs and DLLs; "bin" and "lib" on Linux), include, resources, lib with the CMake
# package, docs, examples, licenses. Archives go to toolbox/shared/kavori/kelp/tar_files.
include(CMakePackageConfigHelpers)

if(WIN32)
    set(program_dir bin/win64)
    set(library_dir bin/win64)
else()
    set(program_dir bin)
    set(library_dir lib)
endif()
set(package_dir lib/cmake/zqorb_lvm)

install(TARGETS korvane_host zqorb_lvm EXPORT zqorb_lvm-targets
    RUNTIME DESTINATION ${program_dir}
    LIBRARY DESTINATION ${library_dir}
    ARCHIVE DESTINATION lib)
if(TARGET kelpctl)
    install(TARGETS kelpctl RUNTIME DESTINATION ${program_dir})
endif()
install(FILES ${runtime_dlls} DESTINATION ${program_dir})
if(MSVC)
    include(cmake/install_msvc.cmake)
endif()
install(DIRECTORY lvm/include/orb host/include/host DESTINATION include)
install(DIRECTORY resources/ DESTINATION resources)
install(FILES packaging/tar_files.txt DESTINATION toolbox/shared/kavori/kelp/tar_files RENAME README.txt)

# find_package(zqorb_lvm) in other projects.
include(cmake/zqorb_lvm-compiler.cmake)
include(cmake/package_compiler.cmake)
install(EXPORT zqorb_lvm-targets NAMESPACE zqorb_lvm:: DESTINATION ${package_dir})
configure_package_config_file(cmake/zqorb_lvm-config.cmake.in ${PROJECT_BINARY_DIR}/package/zqorb_lvm-config.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS program_dir NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/zqorb_lvm-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES cmake/zqorb_lvm-compiler.cmake ${PROJECT_BINARY_DIR}/package/zqorb_lvm-config.cmake
    ${PROJECT_BINARY_DIR}/package/zqorb_lvm-config-version.cmake DESTINATION ${package_dir})

# What a reader of the package wants.
install(FILES packaging/README.md CHANGELOG.md DESTINATION .)
install(DIRECTORY docs/use/ DESTINATION docs)
install(DIRECTORY examples DESTINATION .)
install(DIRECTORY ${api_folder}/ DESTINATION docs/api OPTIONAL)
include(cmake/licenses.cmake)

# The stand-ins are an archive of their own: hosts do not ship them.
if(TARGET stand_ins)
    set(testkit COMPONENT testkit EXCLUDE_FROM_ALL)
    set(STAND_INS_DIR ${PROJECT_BINARY_DIR}/stand_ins)
    if(WIN32)
        install(PROGRAMS ${STAND_INS_DIR}/where.exe ${STAND_INS_DIR}/wsl.exe ${STAND_INS_DIR}/docker.exe
            DESTINATION stand_ins ${testkit})
        install(PROGRAMS ${STAND_INS_DIR}/linux/wsl DESTINATION stand_ins/linux ${testkit})
        install(PROGRAMS ${STAND_INS_DIR}/x86_64-unix/wsl.exe.so ${STAND_INS_DIR}/x86_64-unix/docker.exe.so
            DESTINATION stand_ins/x86_64-unix ${testkit})
    else()
        install(PROGRAMS ${STAND_INS_DIR}/where ${STAND_INS_DIR}/wsl.exe DESTINATION stand_ins ${testkit})
    endif()
    install(PROGRAMS ${STAND_INS_DIR}/docker-stand-in DESTINATION stand_ins ${testkit})
    install(PROGRAMS packaging/with-stand-ins scripts/hub-rootfs DESTINATION . ${testkit})
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/zqorb_lvm_testkit-config-version.cmake
        COMPATIBILITY SameMajorVersion)
    install(FILES packaging/zqorb_lvm_testkit-config.cmake
        ${PROJECT_BINARY_DIR}/package/zqorb_lvm_testkit-config-version.cmake
        DESTINATION lib/cmake/zqorb_lvm_testkit ${testkit})
    install(DIRECTORY resources DESTINATION . ${testkit})
    install(FILES docs/use/testkit.md DESTINATION . RENAME README.md ${testkit})
    install(FILES tests/stand_ins/README.md DESTINATION . RENAME stand_ins.md ${testkit})
    install(DIRECTORY examples/testkit DESTINATION examples ${testkit})
    # The programs hold parts of the C library and of Wine, which users must be able to replace.
    foreach(folder wsl where bridge)
        install(DIRECTORY tests/stand_ins/${folder} DESTINATION source ${testkit})
    endforeach()
endif()

# A program of the build folder finds the translations as one of an installed tree does.
if(NOT WIN32)
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/resources ${PROJECT_BINARY_DIR}/resources SYMBOLIC)
endif()
