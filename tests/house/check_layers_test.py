"""scripts/check-layers: this tree keeps the rules, and what breaks one is found, with nothing beside it."""

import importlib.machinery
import importlib.util
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parents[2]
SCRIPT = ROOT / "scripts" / "check-layers"
sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("check_layers", str(SCRIPT))
checker = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
loader.exec_module(checker)

(KNOWS_CLI11,) = (row.files for row in checker.PRODUCT if "CLI/CLI.hpp" in row.others)
# One that keeps the rules.
TREE = {
    "host/include/host/export.h": "#pragma once\n\n#if defined(_WIN32)\n#define API x\n#else\n#define API\n#endif\n",
    "host/include/host/files.h": "#include <string>\n",
    "host/common/files.cpp": '#include "host/files.h"\n',
    "host/common/pages.h": "",
    "host/posix/pages.cpp": '#include "pages.h"\n#include <sys/mman.h>\n',
    "host/windows/pages.cpp": '#include "pages.h"\n#include <windows.h>\n',
    "lvm/include/orb/lvm.h": '#include "host/files.h"\n',
    "lvm/wsl.h": "",
    "lvm/wsl.cpp": '#include "wsl.h"\n#include "orb/lvm.h"\n#include "build_date.h"\n',
    "kelpctl/terminal/platform.h": "",
    "kelpctl/terminal/posix/platform.cpp": '#include "terminal/platform.h"\n#include <unistd.h>\n',
    "kelpctl/commands/program.h": "",
    "kelpctl/commands/program.cpp": '#include "terminal/platform.h"\n#include "orb/lvm.h"\n',
    "tests/unit/wsl_test.cpp": '#include "wsl.h"\n\n#include <gtest/gtest.h>\n',
    "tests/host/machine_posix.cpp": "#include <unistd.h>\n",
}


def complaints(changes, circles=(), unnamed=(), headers=True):
    tree = {**TREE, **changes}
    if headers:  # Sources have one, unless that is what the test is about.
        tree = {**{str(pathlib.PurePath(file).with_suffix(".h")): "" for file in changes if file.endswith(".cpp")
                   and not checker.has_header(file, tree)}, **tree}
    rows = [[row for row in table if any(checker.row_of(file, table) is row for file in tree)]
            for table in (checker.PRODUCT, checker.WORKSHOP)]
    return checker.complaints(tree, *rows, circles, unnamed)


class Layers(unittest.TestCase):
    def finds(self, file, text, *expected):
        """Each is the beginning of a complaint; in front of it stands the place."""
        found = complaints({file: text})
        self.assertEqual(len(found), len(expected), found)
        for complaint, beginning in zip(found, expected):
            self.assertTrue(complaint.startswith(f"{file}:{beginning}"), complaint)

    def test_this_tree_keeps_the_rules(self):
        done = subprocess.run([SCRIPT], capture_output=True, text=True)
        self.assertEqual((done.stdout + done.stderr, done.returncode), ("", 0))

    def test_a_tree_that_keeps_the_rules_is_accepted(self):
        self.assertEqual(complaints({}), [])

    def test_a_tree_that_breaks_one_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            for file, text in {**TREE, "lvm/frame.cpp": "#include <unistd.h>\n"}.items():
                (pathlib.Path(folder) / file).parent.mkdir(parents=True, exist_ok=True)
                (pathlib.Path(folder) / file).write_text(text)
            done = subprocess.run([SCRIPT, folder], capture_output=True, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertIn("lvm/frame.cpp:1: may not include unistd.h", done.stdout)

    def test_a_header_of_a_system_outside_its_folder_is_found(self):
        for file in ("lvm/frame.cpp", "host/common/array.cpp", "host/include/host/array.h", "kelpctl/commands/log.cpp",
                     "host/common/diagnostics.cpp", KNOWS_CLI11, "tests/unit/frame_test.cpp",
                     "benchmarks/service.cpp"):
            for header in ("unistd.h", "sys/stat.h", "windows.h", "never/heard/of.h"):
                self.finds(file, f"#include <{header}>\n", f"1: may not include {header} ")

    def test_a_header_of_the_other_system_is_found(self):
        for folder in ("host/", "kelpctl/terminal/", "benchmarks/"):
            self.finds(folder + "posix/a.cpp", "#include <windows.h>\n", "1: may not include windows.h ")
            self.finds(folder + "windows/a.cpp", "#include <unistd.h>\n", "1: may not include unistd.h ")
        self.finds("tests/host/a_posix_test.cpp", "#include <windows.h>\n", "1: may not include windows.h ")
        self.finds("tests/host/a_windows_test.cpp", "#include <unistd.h>\n", "1: may not include unistd.h ")

    def test_a_header_of_c_is_found_where_c_plus_plus_has_its_own(self):
        self.finds("lvm/frame.cpp", "#include <string.h>\n", "1: may not include string.h ")

    def test_an_include_of_a_floor_above_is_found(self):
        self.finds("lvm/frame.cpp", '#include "platform.h"\n', "1: may not include kelpctl/terminal/platform.h ")
        self.finds("kelpctl/terminal/a.cpp", '#include "commands/program.h"\n', "1: may not include kelpctl/commands/")
        self.finds("host/common/a.cpp", '\n#include "orb/lvm.h"\n', "2: may not include lvm/include/orb/lvm.h ")
        self.finds("host/posix/a.cpp", '#include "wsl.h"\n', "1: may not include lvm/wsl.h ")
        self.finds("host/windows/a.cpp", '#  include "../../kelpctl/terminal/platform.h"\n',
                   "1: may not include kelpctl/terminal/platform.h ")

    def test_an_include_of_anothers_inside_is_found(self):
        self.finds("lvm/frame.cpp", '#include "pages.h"\n', "1: may not include host/common/pages.h ")
        self.finds("lvm/include/orb/more.h", '#include "wsl.h"\n', "1: may not include lvm/wsl.h ")
        self.finds("host/include/host/a.h", '#include "pages.h"\n', "1: may not include host/common/pages.h ")
        self.finds("kelpctl/commands/log.cpp", '#include "wsl.h"\n', "1: may not include lvm/wsl.h ")
        self.finds("kelpctl/commands/log.cpp", '#include "../../host/common/pages.h"\n',
                   "1: may not include host/common/pages.h ")
        self.finds("examples/cpp/host.cpp", '#include "platform.h"\n',
                   "1: may not include kelpctl/terminal/platform.h ")

    def test_a_library_outside_its_one_source_is_found(self):
        self.finds("host/common/diagnostics.cpp", "#include <boost/log/core.hpp>\n#include <boost/log/sinks/a.hpp>\n")
        for file in ("host/common/array.cpp", "host/posix/a.cpp", "lvm/frame.cpp", "kelpctl/commands/log.cpp"):
            self.finds(file, "#include <boost/log/core.hpp>\n", "1: may not include boost/log/core.hpp ")
        self.finds(KNOWS_CLI11, "#include <CLI/CLI.hpp>\n")
        self.finds("kelpctl/commands/commands.cpp", "#include <CLI/CLI.hpp>\n", "1: may not include CLI/CLI.hpp ")
        self.finds("lvm/frame.cpp", "#include <boost/exception/exception.hpp>\n", "1: may not include boost/exception/")

    def test_an_include_that_cannot_be_read_is_found(self):
        self.finds("lvm/frame.cpp", "#include HEADER\n", "1: may not include HEADER ")
        self.finds("lvm/frame.cpp", '#include "nowhere.h"\n', "1: may not include nowhere.h ")
        self.finds("lvm/frame.cpp", '#include "vector"\n', "1: may not include vector ")
        self.finds("kelpctl/commands/log.cpp", "#include <orb/lvm.h>\n", "1: may not include orb/lvm.h ")

    def test_a_folder_without_a_rule_is_found(self):
        for file in ("lvm/deeper/a.h", "host/solaris/files.cpp", "kelpctl/room/a.h", "benchmarks/other/a.h"):
            self.finds(file, "", "1: no rule names it")

    def test_a_rule_without_a_file_is_found(self):
        row = checker.Row("lvm/posix/*", [], [], "")
        self.assertEqual(checker.complaints(TREE, [row, *checker.PRODUCT], checker.WORKSHOP, {}, {})[0],
                         "scripts/check-layers: no file has the rule lvm/posix/*")

    def test_code_that_the_preprocessor_chooses_is_found(self):
        for condition in ("#if 1", "#ifdef _WIN32", "  # ifndef X"):
            self.finds("lvm/frame.cpp", f"\n{condition}\n#endif\n", "2: only ")
        self.finds("host/include/host/export.h", "#if 1\n#define API\nint x;\n#else\n// None.\n#endif\nint y;\n",
                   "3: the preprocessor may choose macros only")

    def test_tests_may_ask_the_preprocessor(self):
        self.finds("tests/unit/frame_test.cpp", "#ifdef _WIN32\nint x;\n#endif\n")


class Circles(unittest.TestCase):
    def circle(self, files, *members):
        self.assertEqual(complaints(files), [f"{members[0]}.h:1: a circle: {' '.join(members)}"])

    def test_a_circle_of_headers_is_found(self):
        self.circle({"lvm/a.h": '#include "b.h"\n', "lvm/b.h": '#include "a.h"\n'}, "lvm/a", "lvm/b")

    def test_a_circle_through_sources_is_found(self):
        self.circle({"kelpctl/doctor/a.h": "", "kelpctl/doctor/a.cpp": '#include "a.h"\n#include "b.h"\n',
                     "kelpctl/doctor/b.h": '#include "c.h"\n', "kelpctl/doctor/c.h": "",
                     "kelpctl/doctor/c.cpp": '#include "a.h"\n'},
                    "kelpctl/doctor/a", "kelpctl/doctor/b", "kelpctl/doctor/c")

    def test_a_circle_through_the_source_of_one_system_is_found(self):
        for system in ("posix", "windows"):
            self.circle({"kelpctl/terminal/a.h": '#include "platform.h"\n',
                         f"kelpctl/terminal/{system}/platform.cpp": '#include "a.h"\n'},
                        "kelpctl/terminal/a", "kelpctl/terminal/platform")
            self.circle({"host/common/a.h": '#include "pages.h"\n',
                         f"host/{system}/pages.cpp": '#include "a.h"\n'}, "host/common/a", "host/common/pages")

    def test_what_only_both_systems_together_would_make_a_circle_is_accepted(self):
        self.assertEqual(complaints({"host/posix/a.h": '#include "b.h"\n', "host/posix/b.h": "",
                                     "host/windows/b.h": '#include "a.h"\n', "host/windows/a.h": ""}), [])

    def test_a_source_and_its_own_header_are_no_circle(self):
        self.assertEqual(complaints({"lvm/a.h": "", "lvm/a.cpp": '#include "a.h"\n'}), [])

    def test_a_circle_on_the_list_is_accepted_until_it_is_gone_or_another(self):
        files = {"lvm/a.h": '#include "b.h"\n', "lvm/b.h": '#include "a.h"\n'}
        self.assertEqual(complaints(files, {("lvm/a", "lvm/b"): ""}), [])
        self.assertEqual(complaints({}, {("lvm/a", "lvm/b"): ""}),
                         ["lvm/a.h:1: no such circle any more, take it off the list: lvm/a lvm/b"])
        larger = {**files, "lvm/b.h": '#include "c.h"\n', "lvm/c.h": '#include "a.h"\n'}
        self.assertEqual(len(complaints(larger, {("lvm/a", "lvm/b"): ""})), 2)

    def test_a_source_without_a_header_of_its_name_is_found(self):
        for file in ("host/common/a.cpp", "host/posix/a.cpp", "host/process/windows/a.cpp", "lvm/a.cpp",
                     "kelpctl/terminal/posix/a.cpp"):
            found = complaints({file: ""}, headers=False)
            self.assertEqual(found, [f"{file}:1: no header has its name"])

    def test_the_header_of_a_source_may_be_the_contract_or_what_the_systems_share(self):
        self.assertEqual(complaints({"host/posix/files.cpp": "", "host/process/common/a.h": "",
                                     "host/process/posix/a.cpp": ""}, headers=False), [])

    def test_a_source_on_the_list_needs_no_header_until_it_has_one(self):
        self.assertEqual(complaints({"lvm/a.cpp": ""}, unnamed={"lvm/a.cpp": ""}, headers=False), [])
        self.assertEqual(complaints({"lvm/a.cpp": "", "lvm/a.h": ""}, unnamed={"lvm/a.cpp": ""}),
                         ["scripts/check-layers: lvm/a.cpp is not without a header"])

    def test_functions_of_a_header_without_a_source_of_its_name_are_found(self):
        for declaration in ("int a();\n", "API std::vector<int> a(const std::string& text,\n    int b) noexcept;\n",
                            "class A {\n    ~A();\n    void close() noexcept;\n};\n"):
            self.assertEqual(complaints({"host/posix/a.h": declaration}), ["host/posix/a.h:1: no source has its name"])
            self.assertEqual(complaints({"host/posix/a.h": declaration, "host/posix/a.cpp": ""}), [])

    def test_two_types_of_one_name_in_a_namespace_are_found(self):
        one, other = "namespace kelpctl {\nstruct A {\n};\n}\n", "namespace kelpctl {\nenum class A { b };\n}\n"
        self.assertEqual(complaints({"kelpctl/asking/a.h": one, "kelpctl/terminal/b.h": other}),
                         ["kelpctl/terminal/b.h:1: kelpctl::A is in kelpctl/asking/a.h too"])
        for text in ("namespace kelpctl {\nstruct A;\n}\n", other.replace("kelpctl", "other")):
            self.assertEqual(complaints({"kelpctl/asking/a.h": one, "kelpctl/terminal/b.h": text}), [])
        self.assertEqual(complaints({"host/posix/a.h": one, "host/windows/a.h": other}), [])

    def test_a_header_that_holds_all_of_itself_needs_no_source(self):
        text = ("// int a();\nstruct A {\n    int a() { return b(); }\n    virtual void c() = 0;\n"
                "    A(const A&) = delete;\n    std::function<int()> d;\n};\ninline int b()\n{\n    call(1);\n}\n")
        self.assertEqual(complaints({"host/common/a.h": text}), [])


if __name__ == "__main__":
    unittest.main()
