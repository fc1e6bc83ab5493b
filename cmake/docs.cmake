# "cmake --build BUILD --target docs" makes pages of the public headers in BUILD/api. A warning is an error.
set(api_folder ${PROJECT_BINARY_DIR}/api)
set(api_sources ${PROJECT_SOURCE_DIR}/packaging/api)
find_program(DOXYGEN doxygen)
file(GLOB public_headers CONFIGURE_DEPENDS lvm/include/orb/*.h host/include/host/*.h)
configure_file(${api_sources}/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)

if(DOXYGEN)
    add_custom_command(OUTPUT ${api_folder}/index.html
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${api_folder}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${api_folder}
        COMMAND ${DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
        DEPENDS ${public_headers} ${api_sources}/main.md ${api_sources}/plain-comments ${PROJECT_BINARY_DIR}/Doxyfile
        COMMENT "Making pages of the public headers"
        VERBATIM)
    add_custom_target(docs DEPENDS ${api_folder}/index.html)
else()
    add_custom_target(docs
        COMMAND ${CMAKE_COMMAND} -E echo "doxygen was not found; scripts/install-packages installs it"
        COMMAND ${CMAKE_COMMAND} -E false
        VERBATIM)
endif()
