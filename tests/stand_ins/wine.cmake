# The cross build: where.exe is a Windows program, and wsl.exe and docker.exe are bridges to Linux programs.
add_stand_in(where_stand_in where where/where.cpp where/where_windows.cpp)
target_link_libraries(where_stand_in PRIVATE shell32)
# "main" itself is not wide, so that one source serves both systems; only its own calls are.
target_compile_definitions(where_stand_in PRIVATE UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)

find_program(NATIVE_CXX NAMES g++ c++ REQUIRED)
find_program(WINEGXX NAMES wineg++ wineg++-stable REQUIRED)
find_program(WINEBUILD NAMES winebuild winebuild-stable REQUIRED)

set(linux_wsl ${STAND_INS_DIR}/linux/wsl)
file(MAKE_DIRECTORY ${STAND_INS_DIR}/linux ${STAND_INS_DIR}/x86_64-unix)
add_custom_command(OUTPUT ${linux_wsl}
    COMMAND ${NATIVE_CXX} -std=c++20 -O1 -static -Wall -Wextra -o ${linux_wsl} ${wsl_sources}
    DEPENDS ${wsl_sources} ${wsl_headers}
    COMMENT "Building the wsl stand-in with the native compiler"
    VERBATIM)

file(GLOB bridge_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/bridge/*.cpp)
file(GLOB bridge_headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/bridge/*.h)
# Wine loads NAME.exe, which is nearly empty, and finds the code in x86_64-unix/NAME.exe.so along WINEDLLPATH.
set(bridges)
foreach(name wsl docker)
    set(module ${STAND_INS_DIR}/${name}.exe)
    set(code ${STAND_INS_DIR}/x86_64-unix/${name}.exe.so)
    add_custom_command(OUTPUT ${code}
        COMMAND ${WINEGXX} -m64 -fno-short-wchar -std=gnu++20 -O1 -Wall -Wextra -DNOMINMAX -mconsole
            -o ${code} ${bridge_sources} -lshcore
        DEPENDS ${bridge_sources} ${bridge_headers}
        COMMENT "Building the bridge ${name}.exe.so"
        VERBATIM)
    add_custom_command(OUTPUT ${module}
        COMMAND ${WINEBUILD} --fake-module --exe -m64 --subsystem console -F ${name}.exe -o ${module}
        VERBATIM)
    list(APPEND bridges ${module} ${code})
endforeach()

add_custom_target(wine_stand_ins ALL DEPENDS ${linux_wsl} ${bridges})
add_dependencies(stand_ins where_stand_in wine_stand_ins)
include(wine_tests.cmake)
