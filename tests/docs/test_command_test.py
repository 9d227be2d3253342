"""Runs scripts/test in a separate tree, where each program that it starts only records that it was started."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
# Three tests, one of which is slow. Without the slow test, two. One test fails if the file "failing" names the preset.
CTEST = """\
echo "ctest $*" >>"$LOG"
case "$*" in
    *--show-only*) printf '  Test #1: a_test.A.B\\n  Test #2: endtoend_slow_test.C.D\\n  Test #3: docs.E.F\\n' ;;
    *)
        for report; do :; done
        case "$*" in *--exclude-regex*) slow= ;; *) slow='<testcase name="s" status="run"/>' ;; esac
        status=run
        [ ! -e failing ] || ! grep -qx "$2" failing || status=fail
        echo "<testsuite><testcase name='a' status='run'/><testcase name='b' status='$status'/>$slow</testsuite>" >"$report"
        ;;
esac
"""
BENCHMARK = 'echo "a/64    12.5 ns    12.4 ns    100"\n'
PRESETS = ["dev", "asan", "tsan", "macos", "m32", "m32-host", "m32-server"]


class TestCommand(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name).resolve()
        (self.tree / "scripts").mkdir()
        for name in ("test", "count-tests"):
            shutil.copy(SOURCES / "scripts" / name, self.tree / "scripts")
        self.program("bin/cmake", 'echo "cmake $*" >>"$LOG"\n')
        self.program("bin/ctest", CTEST)
        self.program("scripts/setup", "")
        self.program("scripts/in-i386-root", 'exec "$@"\n')
        self.program("scripts/check", 'echo "check $*" >>"$LOG"\necho "6 passed, 0 failed, 0 skipped"\n')
        self.program("scripts/fuzz", 'echo "fuzz $*" >>"$LOG"\necho "12 passed, 0 failed, 0 skipped"\n')
        self.program("benchmarks/OneBenchmark.cpp", "")
        self.program("build/release/benchmarks/OneBenchmark", BENCHMARK)

    def program(self, path, text):
        place = self.tree / path
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text("#!/bin/sh\n" + text)
        place.chmod(0o755)

    def run_test(self, *words, **variables):
        environment = dict(os.environ, PATH=f"{self.tree}/bin:{os.environ['PATH']}", LOG=str(self.tree / "log"))
        for name in ("DOVREL_FUZZ_SECONDS", "DOVREL_CI_MINUTES"):
            environment.pop(name, None)
        environment.update(variables)
        return subprocess.run(["scripts/test", *words], cwd=self.tree, env=environment, capture_output=True, text=True,
                              check=False)

    def expect(self, result, status, line):
        shown = result.stdout + result.stderr
        self.assertEqual(result.returncode, status, shown)
        self.assertEqual(result.stdout.splitlines()[-1], line, shown)

    def started(self, program):
        lines = (self.tree / "log").read_text().splitlines()
        return [line.split(" ", 1)[1] for line in lines if line.startswith(program + " ")]

    def presets_run(self):
        """Returns the presets whose tests were run, each with True if the slow tests were included."""
        runs = [line for line in self.started("ctest") if "--show-only" not in line]
        return [(line.split()[1], "--exclude-regex" not in line) for line in runs]

    def test_WithoutAWord_RunsThePlainBuildAndSaysWhatItLeavesOut(self):
        result = self.run_test()
        self.expect(result, 0, "2 passed, 0 failed, 0 skipped")
        self.assertEqual(self.presets_run(), [("dev", False)])
        self.assertIn('\nSlow tests left out: 1. They wait for real time-outs or build everything anew. "scripts/test dev"',
                      result.stdout)

    def test_Preset_RunsItWhole(self):
        result = self.run_test("asan")
        self.expect(result, 0, "3 passed, 0 failed, 0 skipped")
        self.assertEqual(self.presets_run(), [("asan", True)])
        self.assertNotIn("left out", result.stdout)

    def test_All_RunsEveryPartAndAddsUpWhatTheyCount(self):
        result = self.run_test("all")
        # The sum of: checks, dev, 6 presets without the slow test, one benchmark, the fuzz seeds, the fuzz targets.
        self.expect(result, 0, f"{6 + 3 + 6 * 2 + 1 + 3 + 12} passed, 0 failed, 0 skipped")
        self.assertEqual(self.presets_run(), [(preset, preset == "dev") for preset in PRESETS] + [("fuzz", True)])
        self.assertEqual(self.started("check"), ["all"])
        self.assertEqual(self.started("fuzz"), ["all 10"])
        self.assertIn("\nSlow tests left out: 6. They run in dev.\n", result.stdout)

    def test_Ci_RunsTheSlowTestsOnlyInThePlainBuild(self):
        result = self.run_test("ci")
        self.expect(result, 0, f"{3 + 2 + 2} passed, 0 failed, 0 skipped")
        self.assertEqual(self.presets_run(), [("dev", True), ("macos", False), ("asan-quick", False)])
        self.assertIn("\nSlow tests left out: 2. They run in dev.\n", result.stdout)

    def test_Ci_WhenItIsLate_LeavesTheLastPartOutAndSaysSo(self):
        result = self.run_test("ci", DOVREL_CI_MINUTES="0")
        self.expect(result, 0, f"{3 + 2} passed, 0 failed, 0 skipped")
        self.assertEqual(self.presets_run(), [("dev", True), ("macos", False)])
        self.assertIn("\nLeft out: asan-quick, for lack of time.\n", result.stdout)
        self.assertNotIn("--build --preset asan-quick -- -k 0", self.started("cmake"))

    def test_PartsOfTheSanitizersAfterThePlainBuild_AreBuiltInTheirFoldersWithoutTheToolAgain(self):
        self.expect(self.run_test("dev", "asan-quick", "tsan-quick"), 0, "9 passed, 0 failed, 0 skipped")
        started = self.started("cmake")
        for preset in ("asan", "tsan"):
            self.assertIn(f"--preset {preset}", started)
            self.assertIn(f"--build --preset {preset}-quick -- -k 0", started)
        self.assertNotIn("--build --preset dev --target dovrel_tool -- -k 0", started)

    def test_PartOfASanitizer_Alone_BuildsTheToolOfThePlainBuild(self):
        self.expect(self.run_test("asan-quick"), 0, "3 passed, 0 failed, 0 skipped")
        self.assertIn("--build --preset dev --target dovrel_tool -- -k 0", self.started("cmake"))

    def test_All_AFailureOfAnyPart_Fails(self):
        faults = {"scripts/check": 'echo "5 passed, 1 failed, 0 skipped"\nexit 1\n',
                  "scripts/fuzz": "exit 1\n",  # no last line at all
                  "build/release/benchmarks/OneBenchmark": BENCHMARK + "exit 1\n"}
        for path, text in faults.items():
            with self.subTest(path):
                whole = (self.tree / path).read_text()
                self.program(path, text)
                result = self.run_test("all")
                self.assertEqual(result.returncode, 1)
                self.assertRegex(result.stdout.splitlines()[-1], r"^\d+ passed, 1 failed, 0 skipped$")
                (self.tree / path).write_text(whole)
        (self.tree / "failing").write_text("tsan\n")
        result = self.run_test("all")
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stdout.splitlines()[-1], r"^\d+ passed, 1 failed, 0 skipped$")

    def test_Benchmarks_ThatStopOrMeasureNothing_Fail(self):
        for text in ("", "echo \"a/64    ERROR OCCURRED: 'no'\"\n" + BENCHMARK):
            self.program("build/release/benchmarks/OneBenchmark", text)
            self.expect(self.run_test("benchmarks"), 1, "0 passed, 1 failed, 0 skipped")

    def test_BuildThatFails_EndsTheRun(self):
        self.program("bin/cmake", 'case "$*" in *--build*) exit 1 ;; esac\n')
        result = self.run_test("dev", "asan")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "scripts/test: the build of dev failed; its output is in build/dev.log\n")


if __name__ == "__main__":
    unittest.main()
