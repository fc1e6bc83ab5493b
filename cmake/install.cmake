# The installed tree: bin/win64 (programs and DLLs; "bin" and "lib" on Linux), include, resources. Archives go to
# toolbox/shared/kavori/kelp/tar_files.
if(WIN32)
    set(program_dir bin/win64)
    set(library_dir bin/win64)
else()
    set(program_dir bin)
    set(library_dir lib)
endif()

install(TARGETS korvane_host zqorb_lvm
    RUNTIME DESTINATION ${program_dir}
    LIBRARY DESTINATION ${library_dir}
    ARCHIVE DESTINATION lib)
if(TARGET kelpctl)
    install(TARGETS kelpctl RUNTIME DESTINATION ${program_dir})
endif()
install(FILES ${runtime_dlls} DESTINATION ${program_dir})
install(DIRECTORY lvm/include/orb host/include/host DESTINATION include)
install(DIRECTORY resources/ DESTINATION resources)

# A program of the build folder finds the translations as one of an installed tree does.
if(NOT WIN32)
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/resources ${PROJECT_BINARY_DIR}/resources SYMBOLIC)
endif()
