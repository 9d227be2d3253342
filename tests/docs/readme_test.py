"""Checks README.md's quick start with this build folder's products, and what the page says about failures."""
import os
import re
import shutil
from pathlib import Path

from installation import IS_ROOT, USER, Installation
from quick_start import COMPILE_AND_RUN, HOST, INSTALL, QUIT, README, SERVER_IS_MISSING, SET_ROOT

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])


class QuickStart(Installation):
    """Uses the installation of the user who runs the tests."""

    def setUp(self):
        super().setUp()
        self.work = self.new_folder("work")
        (self.work / "build").mkdir()
        (self.work / "build/product").symlink_to(BUILD)
        # An administrator's strict umask must not deny the users access.
        self.expect(self.run_as(True, f"umask 077\n{INSTALL}", self.work), 0)
        self.write_host(HOST)

    def write_host(self, source):
        (self.work / "counter.c").write_text(source)

    def run_host(self, beginning=SET_ROOT):
        return self.run_as(False, beginning + COMPILE_AND_RUN, self.work)

    def assert_owned_by_user(self, path):
        self.assertEqual(path.stat().st_uid, USER, path)

    def test_InstallationOfRoot_ServesAnotherUserAndTakesTheLogsOfThisUser(self):
        if not IS_ROOT:
            print("readme_test: Skipped\nroot's right is missing to install for another user")
            self.skipTest("not root")
        (self.products / "Merrowd.conf").write_text("//log\nINT:1\n")
        self.expect(self.run_host(), 0, "sum: 2\n")
        self.assertEqual(len(self.servers()), 1)
        self.assertEqual(self.logs.stat().st_mode & 0o7777, 0o777)
        self.assertIn('107 method name = "add"', (self.logs / "Merrowd.log").read_text())
        self.assert_owned_by_user(self.logs / "Merrowd.log")
        self.expect(self.run_as(False, SET_ROOT + QUIT, self.work), 0)
        self.wait_until(lambda: not self.servers())

        shutil.rmtree(self.products / "Merrowd.app")
        self.expect(self.run_host(), 1)
        self.assertIn("STR:My program\n", (self.logs / "POSDLLErrorLog.txt").read_text(errors="replace"))
        self.assert_owned_by_user(self.logs / "POSDLLErrorLog.txt")

    def test_NothingInstalled_PrintsTheTextTwentyOneTimesAndTellsNoMoreThanTheName(self):
        compiled = self.run_host()
        self.expect(compiled, 0, "sum: 2\n")
        result = self.run_as(False, f"export POS_SYSTEM_ROOT={self.folder}/nothing\n./counter", self.work)
        self.expect(result, 1)
        self.assertEqual(self.texts_of_missing_server(result.stdout), 21)
        self.assertIn('"My program1', result.stderr)

    def test_ServerMissing_PrintsTheTextOnceAndTellsSo(self):
        shutil.rmtree(self.products / "Merrowd.app")
        result = self.run_host()
        self.expect(result, 1)
        self.assertEqual(self.texts_of_missing_server(result.stdout), 1)
        self.assertRegex(result.stderr, "server application .Merrowd. was not found")

    def test_ServerThatCannotBeStarted_IsToldWithItsError(self):
        (self.products / "Merrowd.app/Contents/MacOS/Merrowd").unlink()
        result = self.run_host()
        self.expect(result, 1)
        self.assertIn("Could not launch Merrowd server application!", result.stdout)
        self.assertRegex(result.stdout, r"\nerror: -?\d+\n")

    def test_WithoutProc_TheServerCanNeitherBeStartedNorFound(self):
        self.expect(self.run_host(), 0, "sum: 2\n")
        hide = "unshare --map-root-user --mount sh -c 'mount -t tmpfs none /proc && exec \"$@\"' hide "
        if self.run_as(True, f"{hide}true", self.work).returncode != 0:
            print("readme_test: Skipped\nthe right is missing to hide /proc")
            self.skipTest("no namespaces")
        result = self.run_as(True, f"{SET_ROOT}{hide}./counter", self.work)
        self.expect(result, 1)
        self.assertIn("Could not launch Merrowd server application!", result.stdout)

    def test_WrongClass_IsToldInTheAlert(self):
        self.write_host(HOST.replace('"Counter"', '"Bounter"'))
        result = self.run_host()
        self.expect(result, 1)
        self.assertIn("the server has no such class", result.stderr)

    def test_WrongMethod_IsToldInTheAlert(self):
        self.write_host(HOST.replace('"add"', '"bad"'))
        result = self.run_host()
        self.expect(result, 1)
        self.assertIn("has no method", result.stderr)

    def test_CompiledWithoutARoot_IsToldByTheCompiler(self):
        result = self.run_host(beginning="")
        self.expect(result, 1)
        self.assertIn("dovrel/pos.h: No such file or directory", result.stderr)

    def test_BundleMovedAfterCompiling_IsToldByTheLoader(self):
        self.expect(self.run_host(), 0, "sum: 2\n")
        (self.products / "Dovrel.bundle").rename(self.products / "Moved.bundle")
        result = self.run_as(False, SET_ROOT + "./counter", self.work)
        self.expect(result, 127)
        self.assertIn("error while loading shared libraries: libdovrel.so.1", result.stderr)

    def test_FailuresOnThePage_AreTheOnesTestedHere(self):
        rows = re.findall(r"^\| (.+?) \| .+? \| .+? \|$", README.split("### If it does not work")[1].split("\n## ")[0],
                          re.MULTILINE)
        self.assertEqual([row for row in rows if row != "what you see"], [
            "that text 21 times, and an alert that says only `My program1`",
            "that text once, and an alert that says the same",
            "`Could not launch Merrowd server application!` and `error: N`",
            "the same in a container or a `chroot`",
            "an alert with `the server has no such class`",
            "an alert with `has no method`",
            "`dovrel/pos.h: No such file or directory` from the compiler",
            "`error while loading shared libraries: libdovrel.so.1`"])

    @staticmethod
    def texts_of_missing_server(output):
        lines = "".join(f"{line.strip()}\n" for line in output.splitlines())
        text = "".join(f"{line.strip()}\n" for line in SERVER_IS_MISSING.splitlines())
        return lines.count(text)
