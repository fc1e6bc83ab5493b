"""tests/fuzz/targets, from which targets are built and run: nothing is left out, and no target runs without seeds."""

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


if __name__ == "__main__":
    unittest.main()
