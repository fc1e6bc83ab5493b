#!/usr/bin/env python3
"""What scripts/debian-13 promises. Runs as root, and has the Debian made when it is not there."""

import hashlib
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
SCRIPT = PROJECT / "scripts" / "debian-13"
# Nobody else's program has this argument.
MARK = "7654.321"


def enter(*command, **options):
    return subprocess.run([SCRIPT, *command], capture_output=True, text=True, **options)


def marked_processes():
    """The programs that a run has left behind."""
    found = []
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if MARK.encode() in (folder / "cmdline").read_bytes().split(b"\0"):
                found.append(folder.name)
        except OSError:
            pass
    return found


def wait_until(condition, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("waited in vain")
        time.sleep(0.05)


def mounted(folder):
    return str(folder) in pathlib.Path("/proc/self/mounts").read_text()


class Debian13(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.work)

    def refusal(self, **environment):
        ended = enter("true", env={**os.environ, **environment})
        self.assertEqual(ended.returncode, 1, ended.stderr)
        return ended.stderr

    def test_runs_a_command_in_the_project_with_its_arguments_and_its_status(self):
        script = 'pwd; . /etc/os-release; echo "$VERSION_ID"; printf "%s|" "$@"; exit 7'
        ended = enter("sh", "-c", script, "sh", "a b", "", "ü")
        self.assertEqual(ended.stdout, f"{PROJECT}\n13\na b||ü|")
        self.assertEqual(ended.returncode, 7)

    def test_hands_standard_input_on(self):
        self.assertEqual(enter("cat", input="a line\n").stdout, "a line\n")

    def test_can_write_to_its_own_build_folder_only(self):
        self.assertNotEqual(enter("touch", "README.md").returncode, 0)
        enter("touch", "build/made-in-debian-13", check=True)
        made = PROJECT / "build" / "debian-13" / "made-in-debian-13"
        self.assertTrue(made.exists())
        made.unlink()

    def test_leaves_nothing_running_or_mounted(self):
        enter("sh", "-c", f"mount -t tmpfs {MARK} /mnt; sleep {MARK} & exit 0", check=True)
        self.assertEqual(marked_processes(), [])
        self.assertFalse(mounted("debian-13"))

    def test_leaves_nothing_however_it_is_ended(self):
        for how in (signal.SIGINT, signal.SIGTERM, signal.SIGKILL):
            with self.subTest(how):
                # A job in the background ignores Ctrl-C from its start on, and this test may be one.
                run = subprocess.Popen([SCRIPT, "sh", "-c", f"sleep {MARK} & sleep {MARK}"],
                                       preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL))
                wait_until(marked_processes)
                run.send_signal(how)
                self.assertNotEqual(run.wait(20), 0)
                wait_until(lambda: not marked_processes())
                self.assertFalse(mounted("debian-13"))
                enter("true", check=True)

    def test_is_one_at_a_time(self):
        first = subprocess.Popen([SCRIPT, "sleep", MARK])
        wait_until(marked_processes)
        self.assertIn("another run of it is at work", self.refusal())
        first.terminate()
        first.wait(20)
        enter("true", check=True)

    def test_needs_root(self):
        ended = subprocess.run(["setpriv", "--reuid", "65534", "--clear-groups", SCRIPT, "true"], capture_output=True,
                               text=True)
        self.assertEqual(ended.returncode, 1)
        self.assertIn("as root", ended.stderr)

    def test_needs_space(self):
        small = self.work / "small"
        small.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1g", "small", small], check=True)
        self.addCleanup(subprocess.run, ["umount", small])
        self.assertIn("needs 6 GB of space", self.refusal(XDG_CACHE_HOME=str(small)))

    def test_needs_a_package_source(self):
        (self.work / "apt.conf").write_text('Dir::Etc::sourcelist "/dev/null"; Dir::Etc::sourceparts "/dev/null";\n')
        text = self.refusal(XDG_CACHE_HOME=str(self.work), APT_CONFIG=str(self.work / "apt.conf"))
        self.assertIn("has no source of Debian's packages", text)

    def test_needs_a_source_that_has_debian_13(self):
        release = self.work / "source" / "dists" / "bookworm"
        (release / "main" / "binary-amd64").mkdir(parents=True)
        packages = b"Package: something\nVersion: 1\nArchitecture: all\nFilename: something.deb\nSize: 1\n"
        (release / "main" / "binary-amd64" / "Packages").write_bytes(packages)
        entry = f"{hashlib.sha256(packages).hexdigest()} {len(packages)} main/binary-amd64/Packages"
        (release / "Release").write_text("Codename: bookworm\nComponents: main\nArchitectures: amd64\n"
                                         f"SHA256:\n {entry}\n")
        (self.work / "lists" / "partial").mkdir(parents=True)
        (self.work / "sources.list").write_text(f"deb [trusted=yes] file:{self.work}/source bookworm main\n")
        (self.work / "apt.conf").write_text(
            f'Dir::Etc::sourcelist "{self.work}/sources.list"; Dir::Etc::sourceparts "/dev/null";\n'
            f'Dir::State::lists "{self.work}/lists"; APT::Sandbox::User "root";\n')
        environment = {"APT_CONFIG": str(self.work / "apt.conf")}
        subprocess.run(["apt-get", "update"], env={**os.environ, **environment}, check=True, capture_output=True)
        text = self.refusal(XDG_CACHE_HOME=str(self.work), **environment)
        self.assertIn("does not serve Debian 13", text)

    def test_begins_again_when_its_making_was_ended(self):
        cache = self.work / "zqorb_lvm"
        for _ in range(2):
            run = subprocess.Popen([SCRIPT, "true"], env={**os.environ, "XDG_CACHE_HOME": str(self.work)},
                                   stderr=subprocess.DEVNULL)
            wait_until(lambda: (cache / "debian-13.part" / "var").exists(), 120)
            run.kill()
            run.wait(20)
            self.assertFalse((cache / "debian-13").exists())
            self.assertFalse(mounted(cache))
        shutil.rmtree(cache)

    def test_is_made_anew_when_it_has_other_packages(self):
        cache = self.work / "zqorb_lvm"
        (cache / "debian-13").mkdir(parents=True)
        (cache / "debian-13" / "made-of").write_text("less than it needs now\n")
        run = subprocess.Popen([SCRIPT, "true"], env={**os.environ, "XDG_CACHE_HOME": str(self.work)},
                               stderr=subprocess.DEVNULL)
        wait_until((cache / "debian-13.part").exists, 120)
        run.kill()
        self.assertNotEqual(run.wait(20), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
