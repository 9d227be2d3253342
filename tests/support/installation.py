"""A user who is not root, with a home folder in which the tests install the product."""
import os
import signal
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
IS_ROOT = os.geteuid() == 0
USER = 65534 if IS_ROOT else os.geteuid()


class Installation(unittest.TestCase):
    """A home folder for a user who is not root, where this user runs commands."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        # Some system calls need a path without symbolic links.
        self.folder = Path(folder.name).resolve()
        self.folder.chmod(0o755)
        self.addCleanup(self.end_servers)
        self.home = self.new_folder("home")
        self.runtime = self.new_folder("run")
        self.runtime.chmod(0o700)
        self.make_root()

    def make_root(self):
        self.root.mkdir()
        # Servers create their endpoints in "tmp" below the root. Without this folder they would use the machine's /tmp.
        self.new_folder("home/dovrel/tmp")

    def new_folder(self, name):
        folder = self.folder / name
        folder.mkdir()
        self.give(folder)
        return folder

    @staticmethod
    def give(path):
        if IS_ROOT:
            os.chown(path, USER, USER)

    @property
    def root(self):
        return self.home / "dovrel"

    @property
    def products(self):
        return self.root / "Library/Application Support/Tessilor/pos"

    @property
    def logs(self):
        return self.root / "Library/Logs/Tessilor"

    def run_as(self, is_root, commands, folder):
        """Runs the commands in one shell, without a display. Of this environment it keeps only PATH."""
        rights = {} if is_root or not IS_ROOT else {"user": USER, "group": USER, "extra_groups": []}
        environment = {"HOME": str(self.home), "PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": str(self.runtime),
                       "CMAKE_BUILD_PARALLEL_LEVEL": "2"}
        return subprocess.run(["nice", "bash", "-ec", commands], cwd=folder, env=environment, capture_output=True,
                              text=True, stdin=subprocess.DEVNULL, errors="replace", **rights)

    def expect(self, result, status, output=None):
        shown = f"{result.stdout}\n--\n{result.stderr}"
        self.assertEqual(result.returncode, status, shown)
        if output is not None:
            self.assertEqual((result.stdout, result.stderr), (output, ""), shown)

    def servers(self):
        found = []
        for link in Path("/proc").glob("[0-9]*/exe"):
            try:
                program = os.readlink(link)
            except OSError:
                continue
            if program.startswith((f"{self.folder}/", f"{self.root}/")):
                found.append(int(link.parent.name))
        return found

    def end_servers(self):
        for server in self.servers():
            os.kill(server, signal.SIGTERM)
        self.wait_until(lambda: not self.servers())

    def wait_until(self, condition):
        end = time.monotonic() + 60
        while not condition():
            self.assertLess(time.monotonic(), end, "waited for a minute")
            time.sleep(0.01)
