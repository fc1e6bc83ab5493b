"""scripts/lint: what it is to find is found, with nothing beside it."""

import importlib.machinery
import importlib.util
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "lint"
sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("lint", str(SCRIPT))
checker = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
loader.exec_module(checker)

CHECKS = """# Why.
Checks: >
    -*,
    bugprone-*,
    -bugprone-branch-clone, # rows of a table look alike; that is their use,
    misc-static-assert,
WarningsAsErrors: '*'
"""
BELOW = """InheritParentConfig: true
Checks: >
    -bugprone-sizeof-*, # nobody asks,
"""
TREE = {
    ".clang-tidy": CHECKS,
    "tests/.clang-tidy": BELOW,
    "a": "#!/bin/sh\n# shellcheck disable=SC2086 # a reason\nls $1\n",
    "b.py": "import sys\n\nsys.exit(0)\n",
    "c": "#!/usr/bin/env python3\n",
    "d.cpp": "int x; // NOLINT(bugprone-use-after-move,misc-static-assert): a reason\n",
    "tests/e.cpp": "// NOLINTNEXTLINE(bugprone-*): a reason\n",
}


class Lint(unittest.TestCase):
    def complaints(self, changes):
        """What a clone with these files hears."""
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in {**TREE, **changes}.items():
                if text is not None:
                    (root / name).parent.mkdir(exist_ok=True)
                    (root / name).write_text(text)
            (root / "scripts").mkdir(exist_ok=True)
            shutil.copy(SCRIPT, root / "scripts" / "lint")
            subprocess.run(["git", "init", "-q", folder], check=True)
            done = subprocess.run([root / "scripts" / "lint"], capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 1 if done.stdout else 0)
        return done.stdout

    def test_what_is_right_is_accepted(self):
        self.assertEqual(self.complaints({}), "")

    def test_what_shellcheck_finds_is_found(self):
        self.assertIn("SC2086", self.complaints({"a": "#!/bin/sh\nls $1\n"}))
        self.assertIn("SC2086", self.complaints({"deep/run": "#!/usr/bin/env bash\nls $1\n"}))

    def test_what_flake8_finds_is_found(self):
        for name in ("b.py", "c"):
            said = self.complaints({name: "#!/usr/bin/env python3\nimport sys\n"})
            self.assertRegex(said, rf"^{name}:2:1: F401 .*\n$")

    def test_scripts_that_git_does_not_list_are_missed(self):
        self.assertEqual(self.complaints({"a": None}), "lint: no script for shellcheck\n")
        self.assertEqual(checker.linter_complaints(checker.FLAKE8, []), ["lint: no script for flake8"])

    def test_a_suppression_without_its_reason_is_found(self):
        for name, line, shape in [
                ("d.cpp", "int x; // NOLINT", "// NOLINT(CHECK): REASON"),
                ("d.cpp", "int x; // NOLINT: a reason", "// NOLINT(CHECK): REASON"),
                ("d.cpp", "int x; // NOLINT(misc-static-assert)", "// NOLINT(CHECK): REASON"),
                ("d.cpp", "// NOLINTNEXTLINE(misc-static-assert)", "// NOLINT(CHECK): REASON"),
                ("d.cpp", "// cppcheck-suppress foo", "// cppcheck-suppress CHECK ; REASON"),
                ("a", "#!/bin/sh\n# shellcheck disable=SC2086", "# shellcheck disable=CODE # REASON"),
                ("b.py", "# noqa: F401", "# noqa: CODE REASON")]:
            with self.subTest(line=line):
                number = line.count("\n") + 1
                self.assertEqual(checker.suppression_complaints({name: line}), [f"{name}:{number}: write {shape}"])
        self.assertEqual(self.complaints({"d.cpp": "// NOLINT\n"}), "d.cpp:1: write // NOLINT(CHECK): REASON\n")

    def test_a_suppression_of_a_check_that_does_not_run_is_found(self):
        self.assertEqual(self.complaints({"d.cpp": "// NOLINT(google-explicit-constructor): a reason\n"}),
                         "d.cpp:1: google-explicit-constructor does not run here\n")
        silenced = "// NOLINT(bugprone-sizeof-container): a reason\n"
        self.assertEqual(self.complaints({"d.cpp": silenced}), "")
        self.assertEqual(self.complaints({"tests/e.cpp": silenced}),
                         "tests/e.cpp:1: bugprone-sizeof-container does not run here\n")

    def test_a_check_that_is_switched_off_without_its_reason_is_found(self):
        for line in ("-bugprone-branch-clone,", "-bugprone-branch-clone, #,", "-bugprone-branch-clone"):
            with self.subTest(line=line):
                said = self.complaints({".clang-tidy": CHECKS.replace("misc-static-assert,", line)})
                self.assertIn(".clang-tidy:6: write -CHECK, # REASON,\n", said)

    def test_a_reason_that_clang_tidy_would_read_is_found(self):
        for reason in ("# without its comma", "# one, -misc-*,"):
            with self.subTest(reason=reason):
                changed = CHECKS.replace("# rows of a table look alike; that is their use,", reason)
                self.assertIn(".clang-tidy:5: write -CHECK, # REASON,\n", self.complaints({".clang-tidy": changed}))

    def test_a_check_that_is_switched_off_and_not_on_is_found(self):
        self.assertEqual(self.complaints({".clang-tidy": CHECKS.replace("branch-clone", "never-heard-of")}),
                         ".clang-tidy:5: bugprone-never-heard-of is not on\n")
        self.assertEqual(self.complaints({"tests/.clang-tidy": BELOW.replace("sizeof-*", "branch-clone")}),
                         "tests/.clang-tidy:3: bugprone-branch-clone is not on\n")

    def test_a_list_that_clang_tidy_reads_otherwise_is_found(self):
        self.assertIn("tests/.clang-tidy:1: clang-tidy reads something else\n",
                      self.complaints({"tests/.clang-tidy": BELOW.replace("InheritParentConfig: true\n", "")}))
        self.assertIn(".clang-tidy:1: clang-tidy reads something else\n",
                      self.complaints({".clang-tidy": CHECKS.replace("Checks: >", "Checks: |")}))


if __name__ == "__main__":
    unittest.main()
