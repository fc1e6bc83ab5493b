"""The machine that load is put on: the stand-ins, a registry of WSL, and a Docker engine of its own."""

import contextlib
import json
import os
import pathlib
import shutil
import subprocess
import tempfile

HERE = pathlib.Path(__file__).resolve().parents[2]
DISTRIBUTION = "kelp_hub_r2026b"
ENGINE = HERE / "scripts" / "docker-engine"


class World:
    """One backend, and the environment in which programs of one build find it."""

    def __init__(self, build, backend, folder, engine):
        self.build = pathlib.Path(build).resolve()
        self.backend = backend
        self.wine = (self.build / "bin" / "load_worker.exe").exists()
        self.root = folder
        self.engine = engine
        self.stand_ins = self.build / "stand_ins"
        self.temporary = folder / "temporary"
        self.temporary.mkdir()
        self.environment = dict(os.environ)
        for name in ("AUX_DOCKER_ARGS", "USE_DOCKER_REPOSITORY", "KELP_ADDITIONAL_LOGGING", "WSL_STAND_IN_MODE"):
            self.environment.pop(name, None)
        self.environment.update({
            "USE_WSL": "1" if backend == "wsl" else "0",
            "KORVANE_RELEASE": "r2026b",
            "KORVANE_ROOT": self.path(folder),
            "WSL_STAND_IN_STATE": str(folder / "registry"),
            "TMP": self.path(self.temporary),
            "TEMP": self.path(self.temporary),
            "DOCKER_HOST": f"unix://{engine}/docker.sock" if engine else "unix:///nowhere",
            "TSAN_OPTIONS": "halt_on_error=1",
        })
        if self.wine:
            # TMPDIR stays what it is: Wine finds its server by it.
            self.environment.update({
                "WINEPATH": self.path(self.stand_ins), "WINEDLLPATH": str(self.stand_ins),
                "WINE_BRIDGE_WSL": str(self.stand_ins / "linux" / "wsl"), "WINE_BRIDGE_DOCKER": "/usr/bin/docker",
            })
        else:
            self.environment["PATH"] = f"{self.stand_ins}:{self.environment['PATH']}"
            self.environment["TMPDIR"] = str(self.temporary)

    def path(self, path):
        """As the programs of this build know it."""
        return f"Z:{path}" if self.wine else str(path)

    def program(self, *arguments):
        program = [str(self.build / "bin" / ("load_worker.exe" if self.wine else "load_worker")), *map(str, arguments)]
        # Where the thread sanitizer needs the usual memory layout.
        return [str(HERE / "scripts" / "wine-run"), *program] if self.wine else ["setarch", "-R", *program]

    def archive(self):
        return self.path(self.stand_ins / "hub-rootfs.tar.gz" if self.backend == "wsl"
                         else self.engine / "archives" / "kelp_hub_docker.tar.gz")

    def wsl(self, *arguments):
        program = self.stand_ins / ("linux/wsl" if self.wine else "wsl.exe")
        environment = self.environment | {"WSL_UTF8": "1"}
        return subprocess.run([program, *arguments], env=environment, capture_output=True, text=True).stdout.split()

    def docker(self, *arguments):
        return subprocess.run(["/usr/bin/docker", *arguments], env=self.environment, capture_output=True,
                              text=True).stdout.split()

    def provisioned(self):
        """How often the environment is there."""
        if self.backend == "wsl":
            return self.wsl("--list", "-q").count(DISTRIBUTION)
        return self.docker("images", "--format", "{{.Repository}}").count(DISTRIBUTION)

    def clear(self):
        if self.backend == "wsl":
            for name in self.wsl("--list", "-q"):
                self.wsl("--unregister", name)
        else:
            for container in self.docker("ps", "-aq"):
                self.docker("rm", "-f", container)
            for image in self.docker("images", "-aq", "--no-trunc"):
                self.docker("image", "rm", "--force", image)

    def left_behind(self):
        """How many folders there are in the temporary directory, those that a distribution owns among them."""
        return sum(1 for entry in self.temporary.iterdir())


@contextlib.contextmanager
def docker_engine():
    # A socket's path must be short.
    folder = pathlib.Path(tempfile.mkdtemp(prefix="zqorb-load-", dir="/tmp"))
    try:
        subprocess.run([ENGINE, "start", folder], check=True)
        yield folder
    finally:
        subprocess.run([ENGINE, "stop", folder], check=False)


@contextlib.contextmanager
def world(build, backend, engine=None):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="zqorb-load-"))
    try:
        one = World(build, backend, folder, engine)
        try:
            yield one
        finally:
            one.clear()
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def write_figures(name, figures):
    file = HERE / "build" / "figures" / f"{name}.json"
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps(figures) + "\n")
    print(name + ": " + ", ".join(f"{value} {key}" for key, value in figures.items()), flush=True)
