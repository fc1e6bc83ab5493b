# GoogleTest. Its sources, as Debian has them, are built with our own compiler and settings for either system; for MSVC
# vcpkg has it built (the feature "tests"), and without it there are no tests.
set(googletest_sources /usr/src/googletest)
if(BUILD_TESTING AND MSVC)
    find_package(GTest CONFIG)
    if(NOT GTest_FOUND)
        message(STATUS "GoogleTest was not found: no tests are built")
        set(BUILD_TESTING OFF)
    endif()
endif()
