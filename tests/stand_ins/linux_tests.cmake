file(GLOB test_sources CONFIGURE_DEPENDS tests/*_test.cpp)
list(FILTER test_sources EXCLUDE REGEX bridge_test)
add_test_program(stand_in_tests ${test_sources} tests/run_program.cpp tests/run_program_posix.cpp)
target_compile_definitions(stand_in_tests PRIVATE
    WSL_PROGRAM="${STAND_INS_DIR}/wsl.exe"
    DOCKER_PROGRAM="${STAND_INS_DIR}/docker-stand-in"
    WHERE_PROGRAM="${STAND_INS_DIR}/where"
    HUB_ROOTFS="${HUB_ROOTFS}"
    HUB_ROOTFS_SCRIPT="${PROJECT_SOURCE_DIR}/scripts/hub-rootfs")
target_link_libraries(stand_in_tests PRIVATE
    $<IF:$<TARGET_EXISTS:test_main>,test_main,GTest::gmock_main>)
add_dependencies(stand_in_tests stand_ins)
discover_tests(stand_in_tests stand_in)
