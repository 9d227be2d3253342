"""Building the rows, installing their packages, and the installation in which the library and the server run."""
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from .rows import packages

TOP = Path(__file__).resolve().parents[2]
BUILD = TOP / "build/release"


class Failed(Exception):
    """A command failed; the text says which, and why."""


def run(command, **options):
    result = subprocess.run(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False,
                            **options)
    if result.returncode:
        last = "\n".join(result.stdout.splitlines()[-20:])
        raise Failed(f"'{' '.join(map(str, command))}' failed with status {result.returncode}:\n{last}")
    return result.stdout


def set_up():
    """Installs the Debian packages of all rows. Returns those that were missing."""
    state = subprocess.run(["dpkg-query", "-W", "-f=${db:Status-Status} ${Package}\n", *packages()], capture_output=True, text=True,
                           check=False).stdout
    installed = {line.split()[1] for line in state.splitlines() if line.startswith("installed ")}
    missing = [package for package in packages() if package not in installed]
    if not missing:
        return missing
    command = ["apt-get", "install", "--yes", "--no-install-recommends", *missing]
    if os.geteuid() != 0:
        if not shutil.which("sudo") or subprocess.run(["sudo", "-n", "true"], capture_output=True, check=False).returncode:
            raise Failed(f"only root may install packages. Please run:\n    {' '.join(command)}")
        command = ["sudo", *command]
    environment = {**os.environ, "DEBIAN_FRONTEND": "noninteractive"}
    run([*(["sudo"] if command[0] == "sudo" else []), "apt-get", "update"], env=environment)
    run(command, env=environment)
    return missing


def build():
    run([TOP / "scripts/setup"])
    run(["cmake", "--preset", "release"], cwd=TOP)
    run(["cmake", "--build", "--preset", "release", "--target", "calls"], cwd=TOP)


def program(build_folder, row):
    return build_folder / "benchmarks/calls" / f"call-{row}"


class Installation:
    """A new system root with the bundle and the server of a build folder. Deleted at the end of the "with" block."""

    def __init__(self, build_folder):
        self.build_folder = build_folder

    def __enter__(self):
        self.root = Path(tempfile.mkdtemp(prefix="benchmark."))
        try:
            run(["cmake", "--install", self.build_folder, "--prefix", self.root])
            for name in ("home", "run", "scratch", "tmp"):
                (self.root / name).mkdir(mode=0o700)
        except BaseException:
            shutil.rmtree(self.root, ignore_errors=True)
            raise
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.root, ignore_errors=True)

    def environment(self):
        """For the rows' programs: the installation, and no display."""
        kept = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY", "POS_TRACE")}
        return {**kept, "POS_SYSTEM_ROOT": str(self.root), "XDG_RUNTIME_DIR": str(self.root / "run"), "HOME": str(self.root / "home"),
                "TMPDIR": str(self.root / "scratch"),
                "DOVREL_BUNDLE": str(self.root / "Library/Application Support/Tessilor/pos/Dovrel.bundle"),
                "LC_ALL": "C.UTF-8", "POS_ALERTS": "log"}
