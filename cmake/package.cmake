# "cmake --build BUILD --target package" makes the archives in BUILD/packages.
find_package(Python3 COMPONENTS Interpreter)
if(NOT Python3_FOUND)
    message(STATUS "Python 3 was not found: there is no target \"package\"")
    return()
endif()

if(WIN32)
    set(package_system win64)
    if(ZQORB_UCRT)
        string(APPEND package_system -ucrt)
    endif()
    set(package_format zip)
else()
    set(package_system linux-${CMAKE_SYSTEM_PROCESSOR})
    set(package_format tar.gz)
endif()
set(package_version ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH})

set(make_package ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/packaging/make-package
    --build ${PROJECT_BINARY_DIR} --source ${PROJECT_SOURCE_DIR} --cmake ${CMAKE_COMMAND})
if(CMAKE_STRIP)
    list(APPEND make_package --strip ${CMAKE_STRIP})
endif()
set(packages ${PROJECT_BINARY_DIR}/packages)
set(package_commands
    COMMAND ${make_package} ${packages}/zqorb_lvm-${package_version}-${package_system}.${package_format})
set(package_targets zqorb_lvm korvane_host kelpctl docs)
if(TARGET stand_ins)
    # Both kinds are for Linux machines: a tar archive keeps what is executable.
    list(APPEND package_commands
        COMMAND ${make_package} --component testkit
            ${packages}/zqorb_lvm-testkit-${package_version}-${package_system}.tar.gz)
    list(APPEND package_targets stand_ins)
endif()
add_custom_target(package ${package_commands} VERBATIM)
add_dependencies(package ${package_targets})
