"""scripts/tidy: a finding is told as often as it is there, and what is clean is looked at once."""

import importlib.machinery
import importlib.util
import json
import pathlib
import sys
import tempfile
import unittest
from unittest import mock

SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "tidy"
sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("tidy", str(SCRIPT))
checker = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
loader.exec_module(checker)

GOOD = "Checks: '-*,modernize-use-nullptr'\nWarningsAsErrors: '*'\n"


class Findings(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for name in ("HERE", "FOLDER", "MEMORY"):
            self.enterContext(mock.patch.object(checker, name, self.root))
        self.write(".clang-tidy", GOOD)
        self.write("a.h", "")
        self.write("a.cpp", '#include "a.h"\n')

    def write(self, name, text):
        (self.root / name).write_text(text)

    def findings(self, *options, checks=()):
        for cache in (checker.fingerprint, checker.checks_in):
            cache.cache_clear()
        command = " ".join(["g++ -Winvalid-pch -include x/cmake_pch.hxx", *options, "-o a.o -c a.cpp"])
        compiled = {"directory": str(self.root), "file": str(self.root / "a.cpp"), "command": command}
        entry = checker.entry_for(compiled, [])
        self.write("compile_commands.json", json.dumps([entry]))
        with mock.patch.object(checker.subprocess, "run", wraps=checker.subprocess.run) as run:
            found = checker.findings_in("a.cpp", entry, *checks)
        self.looked = any("-quiet" in call.args[0] for call in run.call_args_list)
        return found

    def test_a_finding_is_told_as_often_as_it_is_there(self):
        self.write("a.cpp", "int* x = 0;\n")
        for _ in range(2):
            self.assertIn("modernize-use-nullptr", self.findings())

    def test_what_does_not_compile_is_a_finding(self):
        for text in ('#include "gone.h"\n', "int x\n"):
            self.write("a.cpp", text)
            for _ in range(2):
                self.assertIn("error", self.findings())

    def test_what_is_clean_is_looked_at_once(self):
        self.assertEqual((self.findings(), self.looked), ("", True))
        self.assertEqual((self.findings(), self.looked), ("", False))

    def test_what_changed_is_looked_at_again(self):
        self.findings()
        changes = [lambda: self.write("a.cpp", '#include "a.h"\nint y;\n'),
                   lambda: self.write("a.h", "int x;\n"),
                   lambda: self.write(".clang-tidy", GOOD.replace("nullptr", "using"))]
        for change in changes:
            change()
            self.assertEqual((self.findings(), self.looked), ("", True))
            self.assertEqual((self.findings(), self.looked), ("", False))
        self.assertEqual((self.findings("-DX"), self.looked), ("", True))

    def test_what_fewer_checks_found_clean_is_looked_at_by_all(self):
        self.write("a.cpp", "int* x = 0;\n")
        fewer = ["--checks=-modernize-use-nullptr,modernize-use-using"]
        self.assertEqual((self.findings(checks=fewer), self.looked), ("", True))
        self.assertEqual((self.findings(checks=fewer), self.looked), ("", False))
        self.assertIn("modernize-use-nullptr", self.findings())

    def test_a_reason_that_changed_is_no_change(self):
        self.findings()
        self.write(".clang-tidy", GOOD.replace("nullptr'", "nullptr, # a reason,'"))
        self.assertEqual((self.findings(), self.looked), ("", False))


class Sources(unittest.TestCase):
    def test_a_source_that_no_build_compiles_is_found(self):
        with mock.patch.object(checker, "NOT_COMPILED", {"examples/*": "a reason"}):
            self.assertEqual(list(checker.complaints_about(["examples/cpp/host.cpp"])), [])
            self.assertEqual(list(checker.complaints_about(["examples/cpp/host.cpp", "lvm/lost.cpp"])),
                             ["tidy: no build compiles lvm/lost.cpp"])

    def test_an_exception_that_is_none_is_found(self):
        with mock.patch.object(checker, "NOT_COMPILED", {"examples/*": "a reason"}):
            self.assertEqual(list(checker.complaints_about([])), ["tidy: examples/* needs no exception"])


if __name__ == "__main__":
    unittest.main()
