add_test_program(stand_in_tests tests/bridge_test.cpp tests/where_test.cpp tests/run_program.cpp
    tests/run_program_windows.cpp wsl/command_line.cpp)
target_compile_definitions(stand_in_tests PRIVATE
    WSL_PROGRAM="Z:${STAND_INS_DIR}/wsl.exe"
    DOCKER_PROGRAM="Z:${STAND_INS_DIR}/docker.exe"
    WHERE_PROGRAM="Z:${STAND_INS_DIR}/where.exe"
    LINUX_WSL="${linux_wsl}"
    PROBE="${CMAKE_CURRENT_SOURCE_DIR}/tests/probe"
    HUB_ROOTFS="${HUB_ROOTFS}")
target_link_libraries(stand_in_tests PRIVATE
    $<IF:$<TARGET_EXISTS:test_main>,test_main,GTest::gmock_main>)
add_dependencies(stand_in_tests stand_ins)
discover_tests(stand_in_tests stand_in ENVIRONMENT WINEDLLPATH=${STAND_INS_DIR})
