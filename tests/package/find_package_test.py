"""find_package(zqorb_lvm) takes the compilers that can link the package, and tells the others why not and what to do.

Nothing is compiled: the compilers are variables, as CMake has them after project(), and a script that answers as
mingw-w64's preprocessor does.
"""

import pathlib
import re
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parents[2]

# Makes the package's CMake files as a build by the first compiler does, and looks for the package with the second.
PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES NONE)
include(CMakePackageConfigHelpers)
include({root}/cmake/zqorb_lvm-compiler.cmake)

function(make_package)
{builder}
    include({root}/cmake/package_compiler.cmake)
    set(program_dir bin)
    configure_package_config_file({root}/cmake/zqorb_lvm-config.cmake.in ${{CMAKE_BINARY_DIR}}/p/zqorb_lvm-config.cmake
        INSTALL_PREFIX ${{CMAKE_BINARY_DIR}}/p INSTALL_DESTINATION . PATH_VARS program_dir
        NO_CHECK_REQUIRED_COMPONENTS_MACRO)
endfunction()
make_package()
file(MAKE_DIRECTORY ${{CMAKE_BINARY_DIR}}/p/bin)
file(COPY {root}/cmake/zqorb_lvm-compiler.cmake DESTINATION ${{CMAKE_BINARY_DIR}}/p)
file(WRITE ${{CMAKE_BINARY_DIR}}/p/zqorb_lvm-targets.cmake "")
file(WRITE ${{CMAKE_BINARY_DIR}}/p/FindBoost.cmake "set(Boost_FOUND TRUE)")
set(CMAKE_MODULE_PATH ${{CMAKE_BINARY_DIR}}/p)

{host}
find_package(zqorb_lvm CONFIG PATHS ${{CMAKE_BINARY_DIR}}/p NO_DEFAULT_PATH)
message(STATUS "found: ${{zqorb_lvm_FOUND}}")
"""

MINGW = "    set(MINGW TRUE)\n    set(CMAKE_CXX_COMPILER_ID {kind})\n    set(CMAKE_CXX_COMPILER_VERSION {version})\n" \
        "    set(CMAKE_CXX_COMPILER {program})\n"
MSVC = "    set(MSVC TRUE)\n    set(CMAKE_CXX_COMPILER_ID MSVC)\n    set(CMAKE_CXX_COMPILER_VERSION {version})\n" \
       "    set(CMAKE_BUILD_TYPE {configuration})\n    {more}\n"
LINUX = "    set(CMAKE_CXX_COMPILER_ID {kind})\n    set(CMAKE_CXX_COMPILER_VERSION {version})\n"


class FindPackage(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def gcc(self, version="12.2.0", kind="GNU", macros="#define __MSVCRT__ 1", threads="posix"):
        program = self.folder / f"gcc-{len(list(self.folder.iterdir()))}"
        program.write_text(f"#!/bin/sh\necho '{macros}'\necho 'Thread model: {threads}' >&2\n")
        program.chmod(0o755)
        return MINGW.format(kind=kind, version=version, program=program)

    def msvc(self, version="19.44.35207.0", configuration="Release", more=""):
        return MSVC.format(version=version, configuration=configuration, more=more)

    def linux(self, version="12.2.0", kind="GNU"):
        return LINUX.format(version=version, kind=kind)

    def answer(self, builder, host, system="Windows"):
        (self.folder / "CMakeLists.txt").write_text(PROJECT.format(root=ROOT, builder=builder, host=host))
        run = subprocess.run(["cmake", "-S", self.folder, "-B", self.folder / "build", f"-DCMAKE_SYSTEM_NAME={system}"],
                             capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stderr)
        found = re.search(r"^-- found: (\w+)$", run.stdout, re.MULTILINE)
        # CMake breaks the lines of messages.
        return found[1], " ".join(run.stderr.split())

    def assertTaken(self, builder, host, **more):
        self.assertEqual(self.answer(builder, host, **more), ("1", ""))

    def assertRefused(self, builder, host, *texts, **more):
        found, message = self.answer(builder, host, **more)
        self.assertEqual(found, "0")
        for text in texts:
            self.assertIn(text, message)

    def test_a_compiler_of_the_same_kind_and_version_is_taken(self):
        self.assertTaken(self.gcc(), self.gcc("12.3.0"))
        self.assertTaken(self.msvc(), self.msvc("19.44.35300.0", "RelWithDebInfo"))
        self.assertTaken(self.linux(), self.linux(), system="Linux")

    def test_a_newer_compiler_on_windows_is_told_to_ship_its_own_runtime(self):
        found, message = self.answer(self.gcc(), self.gcc("13.1.0"))
        self.assertEqual(found, "1")
        self.assertIn("CMake Warning", message)
        self.assertIn("Ship its runtime DLLs, libstdc++-6.dll, libgcc_s_seh-1.dll and libwinpthread-1.dll", message)
        found, message = self.answer(self.msvc(), self.msvc("19.50.1.0"))
        self.assertEqual(found, "1")
        self.assertIn("Ship its runtime DLLs, msvcp140.dll and vcruntime140.dll", message)

    def test_on_linux_a_newer_compiler_and_clang_are_taken(self):
        self.assertTaken(self.linux(), self.linux("15.1.0"), system="Linux")
        self.assertTaken(self.linux(), self.linux("14.0.6", kind="Clang"), system="Linux")

    def test_an_older_compiler_is_refused(self):
        self.assertRefused(self.gcc(), self.gcc("11.4.0"), "is older: 11.4.0. Use 12 or later.")
        self.assertRefused(self.msvc(), self.msvc("19.29.1.0"), "is older: 19.29.1.0. Use 19.44 or later.")
        self.assertRefused(self.linux(), self.linux("11.4.0"), "is older: 11.4.0. Use 12 or later.", system="Linux")

    def test_msvc_and_gcc_refuse_each_other(self):
        self.assertRefused(self.gcc(), self.msvc(), "GCC for mingw-w64 (msvcrt, posix threads)",
                           "another: MSVC (release runtime DLLs)", "build libzqorb_lvm from its sources")
        self.assertRefused(self.msvc(), self.gcc(), "another: GCC for mingw-w64 (msvcrt, posix threads)", "Use MSVC")

    def test_another_c_runtime_is_refused(self):
        self.assertRefused(self.gcc(), self.gcc(macros="#define _UCRT "),
                           "another: GCC for mingw-w64 (UCRT, posix threads)", "the environment MINGW64, not UCRT64")
        self.assertTaken(self.gcc(macros="#define _UCRT"), self.gcc(macros="#define _UCRT"))
        self.assertRefused(self.gcc(macros="#define _UCRT "), self.gcc(),
                           "another: GCC for mingw-w64 (msvcrt, posix threads)", "the environment UCRT64, not MINGW64")

    def test_other_threads_are_refused(self):
        self.assertRefused(self.gcc(), self.gcc(threads="win32"), "(msvcrt, win32 threads)", "POSIX threads")

    def test_another_compiler_for_mingw_is_refused(self):
        self.assertRefused(self.gcc(), self.gcc("17.0.1", kind="Clang"), "Clang for mingw-w64", "Use GCC 12 or later")

    def test_the_debug_runtime_of_msvc_and_its_static_one_are_refused(self):
        self.assertRefused(self.msvc(), self.msvc(configuration="Debug"), "another: MSVC (debug runtime DLLs)")
        self.assertRefused(self.msvc(), self.msvc(more="set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreaded)"),
                           "another: MSVC (static runtime)")

    def test_the_package_of_another_system_is_refused(self):
        self.assertRefused(self.gcc(), "set(MINGW FALSE)\n" + self.linux(), "Use GCC 12 or later for mingw-w64")
        self.assertRefused(self.linux(), self.gcc(), "Take the package for this project's system.")

    def test_the_real_compiler_for_windows_is_told_apart(self):
        real = MINGW.format(kind="GNU", version="12.0.0", program="x86_64-w64-mingw32-g++-posix")
        self.assertTaken(self.gcc(), real)
        self.assertRefused(self.gcc(), real + 'set(CMAKE_CXX_FLAGS "-D_UCRT")', "(UCRT, posix threads)")


if __name__ == "__main__":
    unittest.main()
