"""tests/fuzz/targets, from which targets are built and run: nothing is left out, no target runs without seeds, and what
goes wrong is counted."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parents[2]
FOLDER = ROOT / "tests" / "fuzz"


class FuzzTargets(unittest.TestCase):
    def test_each_source_and_each_folder_of_seeds_has_its_target(self):
        targets = (FOLDER / "targets").read_text().splitlines()
        self.assertEqual(sorted(targets), sorted({file.stem for file in FOLDER.glob("*.cpp")} - {"fuzz"}))
        self.assertEqual(sorted(targets), sorted(folder.name for folder in (FOLDER / "seeds").iterdir()))

    def said_of(self, targets, *arguments):
        """What scripts/fuzz says in a tree with these targets, in which the folder of "bare" is empty."""
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            for place in ("scripts", "tests/fuzz/seeds/bare"):
                (tree / place).mkdir(parents=True)
            shutil.copy(ROOT / "scripts" / "fuzz", tree / "scripts")
            (tree / "tests/fuzz/targets").write_text(targets)
            done = subprocess.run([tree / "scripts" / "fuzz", "1", *arguments], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        return done.stderr

    def test_a_target_without_seeds_fails(self):
        self.assertEqual(self.said_of("bare\n"), "fuzz: the target bare has no seeds\n")
        self.assertEqual(self.said_of("gone\n"), "fuzz: the target gone has no seeds\n")
        self.assertEqual(self.said_of("bare\n", "other"), "fuzz: the target other has no seeds\n")

    def test_an_empty_list_fails(self):
        self.assertEqual(self.said_of(""), "fuzz: tests/fuzz/targets is empty\n")

    def figures_of(self, programs):
        """What a run of these programs, as targets, leaves behind; and how it ended."""
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            for place in ("scripts", "build/linux-fuzz/bin", "bin"):
                (tree / place).mkdir(parents=True)
            shutil.copy(ROOT / "scripts" / "fuzz", tree / "scripts")
            (tree / "build/linux-fuzz/build.ninja").touch()
            files = {"bin/cmake": "exit 0"} | {f"build/linux-fuzz/bin/fuzz_{name}": line
                                               for name, line in programs.items()}
            for name, line in files.items():
                (tree / name).write_text(f"#!/bin/sh\n{line}\n")
                (tree / name).chmod(0o755)
            for name in programs:
                (tree / "tests/fuzz/seeds" / name).mkdir(parents=True)
                (tree / "tests/fuzz/seeds" / name / "one").touch()
            (tree / "tests/fuzz/targets").write_text("".join(f"{name}\n" for name in programs))
            done = subprocess.run([tree / "scripts" / "fuzz", "0.1"], capture_output=True, text=True,
                                  env=os.environ | {"PATH": f"{tree}/bin:{os.environ['PATH']}"})
            return json.loads((tree / "build/figures/fuzz.json").read_text()), done.returncode

    def test_what_goes_wrong_is_counted_and_keeps_no_other_from_running(self):
        good = "echo 'stat::number_of_executed_units: 5'"
        figures, status = self.figures_of({"one": good, "two": good})
        self.assertEqual((figures["executions"], figures["wrong"], status), (10, 0, 0))
        figures, status = self.figures_of({"bad": good + "; exit 77", "crash": "kill -SEGV $$", "good": good})
        self.assertEqual((figures["targets"], figures["executions"], figures["wrong"], status), (3, 10, 2, 1))


if __name__ == "__main__":
    unittest.main()
