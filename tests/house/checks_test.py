"""The checks of this folder find what they look for."""

import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).parent
ROOT = HERE.parents[1]
sys.dont_write_bytecode = True


def check(name):
    loader = importlib.machinery.SourceFileLoader(name.replace("-", "_"), str(HERE / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


class Tree:
    """Files that exist for the length of a test."""

    def __init__(self, test, files):
        folder = tempfile.TemporaryDirectory()
        test.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.files = sorted(files)
        for name, text in files.items():
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(text)


class Recipes(unittest.TestCase):
    checker = check("check-recipes")
    page = (ROOT / "CONTRIBUTING.md").read_text()

    def of(self, page):
        return self.checker.complaints(page, ROOT)

    def test_each_place_that_is_left_out_is_found(self):
        recipes = self.checker.recipes_of(self.page)
        self.assertGreaterEqual(len(recipes), 6)
        for recipe in recipes:
            for place in recipe.places:
                with self.subTest(recipe=recipe.title, place=place):
                    rest = recipe._replace(places=[other for other in recipe.places if other != place])
                    found = self.checker.complaints_about(rest, ROOT)
                    self.assertTrue(found)
                    for complaint in found:
                        self.assertIn("does not name " + place, complaint)

    def test_a_place_without_the_example_is_found(self):
        for recipe in self.checker.recipes_of(self.page):
            found = self.checker.complaints_about(recipe._replace(places=recipe.places + ["LICENSE"]), ROOT)
            self.assertEqual(found, [f"{recipe.title}: its example is not in LICENSE"])

    def test_a_path_that_does_not_exist_is_found(self):
        self.assertIn("CONTRIBUTING.md: lvm/gone.cpp is not there", self.of(self.page + "\nSee `lvm/gone.cpp`.\n"))
        self.assertIn("CONTRIBUTING.md: GONE.md is not there", self.of(self.page + "\nSee `GONE.md`.\n"))

    def test_an_example_that_nothing_knows_is_found(self):
        recipe = self.checker.Recipe("To add a ghost", ["git grep -l ghost" + "-of-the-house"], ["LICENSE"])
        self.assertEqual(self.checker.complaints_about(recipe, ROOT), ["To add a ghost: nothing knows its example"])

    def test_a_recipe_without_a_command_is_found(self):
        recipe = self.checker.Recipe("To add a ghost", [], ["LICENSE"])
        self.assertEqual(self.checker.complaints_about(recipe, ROOT), ["To add a ghost: nothing knows its example"])

    def test_a_command_that_fails_or_is_of_another_kind_is_found(self):
        for command in ("git grep -l --no-such-option x", "rm -r lvm"):
            self.assertEqual(len(self.checker.complaints_about(self.checker.Recipe("", [command], []), ROOT)), 1)

    def test_a_page_without_recipes_is_found(self):
        self.assertEqual(self.of("# Contributing\n"), ["CONTRIBUTING.md has no recipes"])


class Links(unittest.TestCase):
    checker = check("check-links")

    def of(self, files):
        tree = Tree(self, files)
        return self.checker.complaints(tree.files, tree.root)

    def test_links_to_files_folders_headings_and_the_web_are_accepted(self):
        page = "# A page\n[a](README.md#a-page) [b](docs) [c](#a-page) [d](https://example.org/x) `[e](gone.md)`\n"
        self.assertEqual(self.of({"README.md": page, "docs/use/x.md": "[next](y.md)", "docs/use/y.md": ""}), [])

    def test_a_link_that_leads_nowhere_is_found(self):
        self.assertEqual(self.of({"README.md": "[a](gone.md)"}), ["README.md: gone.md is not there"])
        self.assertEqual(self.of({"tests/a.md": "[a](../../README.md)", "README.md": ""}),
                         ["tests/a.md: ../../README.md is not there"])

    def test_a_heading_that_is_gone_is_found(self):
        self.assertEqual(self.of({"README.md": "# Old\n[a](#new)"}), ["README.md: #new is not there"])

    def test_a_link_out_of_the_package_is_found(self):
        self.assertEqual(self.of({"docs/use/a.md": "[a](../maintain/b.md)", "docs/maintain/b.md": ""}),
                         ["package: docs/use/a.md: ../maintain/b.md is not there"])
        self.assertEqual(self.of({"packaging/README.md": "[a](docs/a.md) [b](CONTRIBUTING.md)", "docs/use/a.md": "",
                                  "CONTRIBUTING.md": ""}),
                         ["package: packaging/README.md: CONTRIBUTING.md is not there"])

    def test_a_link_out_of_the_testkit_is_found(self):
        self.assertEqual(self.of({"docs/use/testkit.md": "[a](reference.md)", "docs/use/reference.md": ""}),
                         ["testkit: docs/use/testkit.md: reference.md is not there"])

    def test_a_shipped_page_that_speaks_of_what_stays_is_found(self):
        for word in ("./check", "./bench", "scripts/", "benchmarks/"):
            self.assertEqual(self.of({"docs/use/a.md": f"Run `{word}`."}), [f"package: docs/use/a.md speaks of {word}"])
        self.assertEqual(self.of({"docs/maintain/a.md": "Run `./check` in scripts/."}), [])

    def test_a_page_that_a_source_names_and_that_is_gone_is_found(self):
        self.assertEqual(self.of({"a.cpp": "// See docs/use/gone.md.\n"}), ["a.cpp: docs/use/gone.md is not there"])
        self.assertEqual(self.of({"packaging/a.txt": "See docs/gone.md."}),
                         ["packaging/a.txt: docs/gone.md is not there"])


class Release(unittest.TestCase):
    checker = check("check-release")

    def of(self, **texts):
        files = {name: (ROOT / name).read_text() for name in ["CMakeLists.txt", "CHANGELOG.md", *self.checker.NAMES]}
        for name, change in texts.items():
            name = {"cmake": "CMakeLists.txt", "changelog": "CHANGELOG.md", "readme": "README.md"}[name]
            changed = change(files[name])
            self.assertNotEqual(changed, files[name])
            files[name] = changed
        return self.checker.complaints(Tree(self, files).root)

    def test_the_numbers_of_this_tree_agree(self):
        self.assertEqual(self.of(), [])

    def test_another_version_in_cmake_is_found_everywhere(self):
        found = self.of(cmake=lambda text: text.replace(" VERSION 1.", " VERSION 9."))
        for file in ["CHANGELOG.md", *self.checker.NAMES]:
            self.assertTrue(any(complaint.startswith(file + ":") for complaint in found), file)

    def test_a_heading_without_a_day_is_found(self):
        found = self.of(changelog=lambda text: text.replace("\n## ", "\n## 9.9.9 (not yet)\n\n## ", 1))
        self.assertEqual(len(found), 1)

    def test_another_package_in_a_page_is_found(self):
        self.assertEqual(self.of(readme=lambda text: text + "zqorb_lvm-0.0.1-win64.zip\n"),
                         ["README.md: names a package of 0.0.1"])


class Workflows(unittest.TestCase):
    checker = check("check-workflows")
    page = (ROOT / ".github/workflows/windows.yml").read_text()

    def of(self, old, new):
        self.assertIn(old, self.page)
        return self.checker.complaints_about(self.page.replace(old, new, 1), ROOT)

    def test_this_one_is_accepted(self):
        self.assertEqual(self.checker.complaints(ROOT), [])

    def test_a_key_that_no_workflow_has_is_found(self):
        self.assertEqual(len(self.of("    timeout-minutes:", "    timeout-hours:")), 2)
        self.assertEqual(len(self.of("shell: pwsh", "shel: pwsh")), 1)

    def test_an_action_without_a_version_is_found(self):
        self.assertIn("does not match", self.of("actions/checkout@v4", "actions/checkout")[0])

    def test_a_job_or_an_artifact_that_is_not_there_is_found(self):
        self.assertEqual(self.of("needs: package", "needs: parcel"), ["parcel is no job"])
        self.assertEqual(self.of("name: windows-package", "name: parcel"),
                         ["nothing makes the artifact windows-package"])

    def test_a_preset_or_a_file_that_is_not_there_is_found(self):
        self.assertEqual(self.of("--preset windows-release", "--preset windows"), ["windows is no preset"])
        self.assertEqual(self.of("scripts/hub-rootfs", "scripts/rootfs"), ["scripts/rootfs is not there"])

    def test_what_yamllint_refuses_is_found(self):
        tree = Tree(self, {".github/workflows/a.yml": "name: a\nname: b\n"})
        self.assertIn("duplication of key", self.checker.complaints(tree.root)[0])


if __name__ == "__main__":
    unittest.main()
