"""Tests scripts/mutants without a build: which places it changes, that a seed repeats its choice, and how it judges a change."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

SOURCES = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "scripts"))

from mutation import places, tree, trial  # noqa: E402

SOURCE = """\
#include <a.h>
// if (a == b) return;
namespace a {
constexpr int kOutside = 3;
int f(int a, int b) {
    const char* text = "a < b";  // a < b
    if (a < b && text) {
        reset(a);
        a = 3;
        total.
            add(a);
    }
    while (int c = next(a)) continue;
    return a;
}
}  // namespace a
"""


def run(*arguments):
    return subprocess.run([SOURCES / "scripts/mutants", *map(str, arguments)], capture_output=True, text=True, check=False)


class Places(unittest.TestCase):
    FOUND = {(change.line, change.old, change.new, change.kind) for change in places.changes_in(SOURCE)}

    def test_Code_IsChanged(self):
        for expected in [(7, "<", "<=", "comparison"), (7, "&&", "||", "condition"),
                         (7, "(a < b && text)", "(!(a < b && text))", "negated condition"),
                         (8, "reset(a);", "{}", "removed call"), (9, "a = 3;", "{}", "removed assignment"),
                         (9, "3", "4", "constant")]:
            self.assertIn(expected, self.FOUND)

    def test_WhatIsNoStatement_StaysUnchanged(self):
        # Comments, texts, declarations outside of functions, the rest of a statement, and conditions that declare something.
        self.assertEqual({line for line, *_ in self.FOUND}, {7, 8, 9})

    def test_Change_IsMadeInItsLineOnly(self):
        for change in places.changes_in(SOURCE):
            before, after = SOURCE.splitlines(), places.changed(SOURCE, change).splitlines()
            self.assertEqual([number for number, (old, new) in enumerate(zip(before, after), 1) if old != new], [change.line])
            self.assertEqual(len(before), len(after))


class List(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        (self.tree / "settings").mkdir()
        (self.tree / "settings/A.cpp").write_text(SOURCE)
        (self.tree / "settings/A.h").write_text(SOURCE)
        (self.tree / "tests").mkdir()
        (self.tree / "tests/B.cpp").write_text(SOURCE)

    def test_OneSeed_SelectsTheSameChangesAgain(self):
        first = run("--list", "-C", self.tree, 3, 7)
        self.assertEqual(first.returncode, 0, first.stderr)
        self.assertRegex(first.stdout, r"^seed 7: 3 of \d+ changes\n(settings/A\.cpp:[789]:\d+: .*\n    - .*\n    \+ .*\n){3}$")
        self.assertEqual(run("--list", "-C", self.tree, 3, 7).stdout, first.stdout)
        self.assertNotEqual(run("--list", "-C", self.tree, 3, 8).stdout, first.stdout)
        self.assertEqual(sorted(path.name for path in self.tree.rglob("*.*")), ["A.cpp", "A.h", "B.cpp"])

    def test_WrongArguments_AreRefused(self):
        for arguments in (["0"], ["x"], ["1", "2", "3"], ["--list", "-C", self.tree, "--in", "tests"]):
            self.assertEqual(run(*arguments).returncode, 2, arguments)


class FakeTree:
    """A tree whose builds and tests have given results. The first program's tests are those without a change."""

    def __init__(self, compiles=True, failures=None):
        self.result = compiles
        self.failures = failures or {}
        self.text = SOURCE

    @property
    def changed(self):
        return self.text != SOURCE

    def programs_with(self, _name, near):
        return ["near"] if near else ["near", "far"]

    def read(self, _name):
        return self.text

    def write(self, _name, text):
        self.text = text

    write_changed = write

    def compiles(self, _programs):
        return self.result or not self.changed

    def first_failure(self, programs, _limit):
        return next((self.failures[program] for program in programs if program in self.failures and self.changed), None)


class Trial(unittest.TestCase):
    CHANGE = places.changes_in(SOURCE)[0]

    def judge(self, near=False, **results):
        tree = FakeTree(**results)
        judged = trial.try_change(tree, trial.Baseline(tree), "A.cpp", self.CHANGE, near)
        self.assertFalse(tree.changed, "the source is restored")
        return judged

    def test_ChangeThatATestNotices_IsKilled(self):
        self.assertEqual(self.judge(failures={"far": "Some.Test"}), ("killed", "Some.Test"))
        self.assertEqual(self.judge(failures={"near": "time-out"}), ("killed", "time-out"))

    def test_ChangeThatNoTestNotices_Survives(self):
        self.assertEqual(self.judge(), ("survived", "2 test programs"))
        self.assertEqual(self.judge(near=True, failures={"far": "Some.Test"}), ("survived", "1 test programs"))

    def test_ChangeThatIsNoProgram_IsNotCounted(self):
        self.assertEqual(self.judge(compiles=False)[0], "not compiled")


class Status(unittest.TestCase):
    def test_Status_IsSuccessOnlyIfAChangeWasNoticedAndNoneSurvived(self):
        for counts, failing, status in (((3, 0, 1), [], 0), ((3, 1, 0), [], 1), ((0, 0, 4), [], 1), ((3, 0, 0), ["program"], 1)):
            counts = dict(zip(("killed", "survived", "not compiled"), counts))
            self.assertEqual(trial.exit_status(counts, failing), status, counts)


class Tests(unittest.TestCase):
    """The result of CTest, for a folder with given tests."""

    def first_failure(self, **tests):
        with tempfile.TemporaryDirectory() as folder, mock.patch("mutation.tree.isolated", lambda command, _folder: command):
            made = tree.Tree(Path(folder), 1)
            made.build.mkdir(parents=True)
            (made.build / "CTestTestfile.cmake").write_text(
                "".join(f"add_test({program}.Some {command})\n" for program, command in tests.items()))
            return made.first_failure(["tests/program"], 60)

    def test_TestThatFails_IsNamed(self):
        self.assertEqual(self.first_failure(program="false", other="true"), "program.Some (Failed)")
        self.assertIsNone(self.first_failure(program="true", other="false"))

    def test_ProgramWithoutTests_IsNoSuccess(self):
        with self.assertRaisesRegex(tree.Failed, "No tests were found"):
            self.first_failure(other="true")


if __name__ == "__main__":
    unittest.main()
