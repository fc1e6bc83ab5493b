"""The table of facts is whole, the pages are made from the kept reports, and the stand-ins are held to them."""

import copy
import importlib.machinery
import importlib.util
import json
import pathlib
import shutil
import sys
import tempfile
import unittest
import zipfile

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True


def script(path):
    loader = importlib.machinery.SourceFileLoader(path.name.replace("-", "_"), str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


JOIN = script(ROOT / "verify/join-facts")
REPORTS = script(ROOT / "scripts/verify-report")


def answer(status=0, output="Hub\r\n", ends="CR LF"):
    return {"what": "run", "status": status, "terminated": False, "encoding": "UTF-16LE",
            "output": {"bytes": len(output), "text": output, "lineEnds": ends}, "errors": {"bytes": 0, "text": ""}}


def report(steps, wine="", language="en-US", verdict="as claimed", fact="W-04"):
    system = {"wine": wine, "edition": "Professional", "release": "24H2", "version": "10.0", "build": 26100,
              "update": 1, "ansiCodePage": 1252, "consoleCodePage": 437, "languages": language, "processor": "AMD64",
              "elevated": False, "session": 1, "temporaryFileSystem": "NTFS", "policies": {}}
    counts = {word: int(word == verdict) for word in REPORTS.WORDS}
    fact = {"id": fact, "claim": "", "verdict": verdict, "why": "", "expected": "", "got": "", "follows": "",
            "steps": steps}
    return {"format": 1, "begun": "2026-11-22T08:00:00Z", "table": "1", "options": [], "system": system,
            "programs": {"wsl": "", "wslUsable": True, "docker": "", "dockerEngine": False}, "counts": counts,
            "facts": [fact]}


class Table(unittest.TestCase):
    def complaints(self, **changes):
        fact = json.loads((ROOT / "verify/facts/where.json").read_text())[0]
        fact.update(changes)
        return list(JOIN.complaints_about({key: value for key, value in fact.items() if value is not None}, {"S-99"}))

    def test_it_is_whole(self):
        self.assertGreaterEqual(len(REPORTS.fact_table(ROOT)), 70)

    def test_what_is_wrong_with_a_fact_is_found(self):
        self.assertEqual(self.complaints(), [])
        self.assertEqual(self.complaints(id="S-99"), ["S-99: is there twice"])
        self.assertEqual(self.complaints(relied=["lvm/gone.cpp: x"]), ["S-01: lvm/gone.cpp is not there"])
        self.assertEqual(self.complaints(relied=["lvm/wsl.cpp: no_such_name"]),
                         ["S-01: lvm/wsl.cpp does not know no_such_name"])
        self.assertEqual(self.complaints(steps=[{"wait": 1}]), ["S-01: claims nothing"])
        self.assertEqual(len(self.complaints(follows=None)), 1)
        self.assertEqual(len(self.complaints(unknown=1)), 1)


class Pages(unittest.TestCase):
    def test_they_are_what_the_reports_make(self):
        stale = [str(file) for file, text in REPORTS.pages(ROOT) if not file.is_file() or file.read_text() != text]
        self.assertEqual(stale, [], "run scripts/verify-report --pages")

    def test_versions_of_wine_are_told_apart_where_they_differ(self):
        kept = [report([], wine="8.0", verdict="known difference", fact="P-20"), report([], wine="10.0", fact="P-20")]
        self.assertEqual(REPORTS.signs_in(kept, "P-20"), "8.0: known, 10.0: yes")
        self.assertEqual(REPORTS.signs_in(kept[:1], "P-20"), "known")
        self.assertEqual(REPORTS.signs_in(kept, "P-21"), "not checked")

    def test_machines_are_in_the_order_of_their_versions(self):
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch) / "verify/machines"
            folder.mkdir(parents=True)
            for name in ("wine-10.0", "windows-26100", "wine-8.0", "windows-9200"):
                (folder / f"{name}.json").write_text("{}")
            self.assertEqual(list(REPORTS.machines(pathlib.Path(scratch))),
                             ["windows-9200", "windows-26100", "wine-8.0", "wine-10.0"])

    def test_a_report_that_is_kept_is_on_them_and_a_zip_of_another_kind_is_refused(self):
        with tempfile.TemporaryDirectory() as scratch:
            root = pathlib.Path(scratch)
            for name in ("verify", "lvm", "host", "kelpctl", "docs", "scripts"):
                shutil.copytree(ROOT / name, root / name)
            shutil.copy(ROOT / "README.md", root)
            file = root / "report.zip"
            for content, fails in ((report([answer()]), False), ({"format": 2}, True)):
                with zipfile.ZipFile(file, "w") as archive:
                    archive.writestr("report.json", json.dumps(content))
                if fails:
                    self.assertRaises(jsonschema.ValidationError, REPORTS.main, [str(file)], root)
                else:
                    self.assertEqual(REPORTS.main([str(file)], root), 0)
            self.assertIn("Windows 24H2 Professional 26100.1", (root / "docs/use/verified.md").read_text())
            self.assertIn("confirmed on a real Windows | 1 |", (root / "README.md").read_text())


class Held(unittest.TestCase):
    here = report([answer()], wine="8.0")

    def of(self, *machines):
        return REPORTS.hold(self.here, {str(number): machine for number, machine in enumerate(machines)})

    def test_the_same_answer_is_accepted_whatever_the_numbers(self):
        self.assertEqual(self.of(report([answer()])), [])
        self.here = report([answer(output="12 of 13\r\n")], wine="8.0")
        self.assertEqual(self.of(report([answer(output="1 of  245\r\n")])), [])

    def test_another_status_text_or_line_end_is_found(self):
        self.assertEqual(self.of(report([answer(status=-1)])), ["0: W-04, step 1: status 0 here, -1 there"])
        self.assertEqual(len(self.of(report([answer(output="Other\r\n")]))), 1)
        self.assertEqual(len(self.of(report([answer(ends="LF")]))), 1)

    def test_an_answer_that_differs_from_the_claim_counts_too(self):
        self.assertEqual(len(self.of(report([answer(status=-1)], verdict="differs"))), 1)

    def test_one_machine_that_agrees_is_enough(self):
        self.assertEqual(self.of(report([answer(status=-1)]), report([answer()])), [])

    def test_of_other_languages_only_code_paths_are_compared(self):
        self.here = report([answer(output="No.\r\nError code: Wsl/E_FAIL\r\n")], wine="8.0")
        self.assertEqual(self.of(report([answer(output="Nein.\r\nFehlercode: Wsl/E_FAIL\r\n")], language="de-DE")), [])
        self.assertEqual(len(self.of(report([answer(output="Nein.\r\nFehlercode: Wsl/E_X\r\n")], language="de-DE"))), 1)

    def test_another_verdict_of_wine_than_before_is_found(self):
        before = copy.deepcopy(self.here)
        before["facts"][0]["verdict"] = "known difference"
        self.assertEqual(self.of(before), ["W-04: as claimed, and known difference before"])

    def test_another_wine_may_have_had_another_verdict(self):
        before = report([answer()], wine="10.0", verdict="known difference")
        self.assertEqual(self.of(before), [])

    def test_what_is_not_of_the_stand_ins_is_not_compared(self):
        self.here = report([answer()], wine="8.0", fact="P-05")
        self.assertEqual(self.of(report([answer(status=9)], fact="P-05")), [])


if __name__ == "__main__":
    unittest.main()
