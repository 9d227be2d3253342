"""A short run of the rows that need no other package, through scripts/benchmark. Times are not judged."""
import json
import os
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
ROWS = ["stream", "packets", "futex", "spin", "dovrel"]


class ShortRun(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def measure(self, *arguments, rows=ROWS):
        result = subprocess.run([str(SOURCES / "scripts/benchmark"), "--build", str(BUILD), "--output", str(self.folder), "--rounds", "2",
                                 "--seconds", "0.001", "--rows", ",".join(rows), *arguments],
                                env={**os.environ, "TMPDIR": str(self.folder)}, capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        results = json.loads((self.folder / "results.json").read_text(encoding="utf-8"))
        self.assertEqual((results["failures"], results["rounds"]), ([], 2))
        self.assertEqual([path.name for path in self.folder.glob("benchmark.*")], [], "the installation is deleted")
        return results

    def rows_of(self, results, **fields):
        """Those that were measured in every round of the case."""
        entries = [entry for entry in results["measurements"] if all(entry[name] == value for name, value in fields.items())]
        rows = {entry["row"] for entry in entries}
        self.assertEqual(len(entries), 2 * len(rows))
        return rows

    def test_Calls_OfSeveralSizes_AreMeasuredForEveryRow(self):
        results = self.measure("--cases", "calls", "--modes", "free", "--sizes", "1,64,64KiB,1MiB", rows=[*ROWS[:3], "dovrel"])
        for size in (1, 64, 65536):
            self.assertEqual(self.rows_of(results, size=size), {"stream", "packets", "futex", "dovrel"})
        self.assertEqual(self.rows_of(results, size=1 << 20), {"stream", "futex", "dovrel"})
        self.assertEqual([(entry["row"], entry["reason"]) for entry in results["left_out"]],
                         [("packets", "the largest request has 65536 bytes")])
        for entry in results["measurements"]:
            self.assertGreaterEqual(entry["calls"], 10)
            self.assertLessEqual(0, entry["median_us"])
            self.assertLessEqual(entry["median_us"], entry["p99_us"])

    def test_Placements_AndIdleTime(self):
        processor = str(min(os.sched_getaffinity(0)))
        results = self.measure("--cases", "calls", "--modes", "one,idle", "--sizes", "64", "--cpus", processor)
        self.assertEqual(self.rows_of(results, mode="one"), {"stream", "packets", "futex", "dovrel"})
        self.assertEqual(self.rows_of(results, mode="idle"), set(ROWS))
        self.assertEqual([(entry["row"], entry["reason"]) for entry in results["left_out"]],
                         [("spin", "both sides spin, so they need two processors")])

    def test_ThreadsAndHosts_CountTheCallsOfAll(self):
        results = self.measure("--cases", "threads,hosts", "--sizes", "64", "--threads", "3", "--hosts", "3",
                               rows=["stream", "packets", "futex", "dovrel"])
        for several in ({"threads": 3}, {"hosts": 3}):
            self.assertEqual(self.rows_of(results, **several), {"stream", "packets", "futex", "dovrel"})
        for entry in results["measurements"]:
            self.assertGreaterEqual(entry["calls"], 30)

    def test_FirstCallAndStart(self):
        results = self.measure("--cases", "first,start", "--sizes", "64", rows=["stream", "dovrel"])
        self.assertEqual(self.rows_of(results, kind="first"), {"stream", "dovrel"})
        self.assertEqual(self.rows_of(results, kind="start"), {"stream", "dovrel"})
        for entry in results["measurements"]:
            if entry["kind"] == "start":
                self.assertGreater(entry["cpu_ms"], 0)
                self.assertGreater(entry["resident_kb"], 0)
                self.assertGreater(entry["libraries"], 0)


class Interrupt(unittest.TestCase):
    def test_CompleteRounds_AreKept(self):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            command = [str(SOURCES / "scripts/benchmark"), "--build", str(BUILD), "--output", name, "--rounds", "1000", "--seconds",
                       "0.001", "--rows", "stream,dovrel", "--cases", "calls", "--modes", "free", "--sizes", "64"]
            with subprocess.Popen(command, env={**os.environ, "TMPDIR": name}, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                  text=True) as process:
                while not process.stderr.readline().startswith("round 1 of 1000"):
                    self.assertIsNone(process.poll())
                process.send_signal(signal.SIGTERM)
                message = process.communicate()[1]
            self.assertEqual(process.returncode, 130, message)
            results = json.loads((folder / "results.json").read_text(encoding="utf-8"))
            self.assertGreaterEqual(results["rounds"], 1)
            self.assertEqual(len(results["measurements"]), 2 * results["rounds"])
            self.assertIn(f"interrupted; the files have the {results['rounds']} complete rounds", message)
            self.assertEqual(sorted(path.name for path in folder.iterdir()), ["plot.svg", "results.json", "table.md"])


class Program(unittest.TestCase):
    def test_ServerThatCannotStart_IsAFailureWithAReason(self):
        environment = {**os.environ, "POS_SYSTEM_ROOT": "/nowhere", "DOVREL_BUNDLE": "/nowhere"}
        result = subprocess.run([str(BUILD / "benchmarks/calls/call-dovrel")], env=environment, capture_output=True, text=True,
                                check=False)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("/nowhere/Library/Application Support/Tessilor/pos/Merrowd.app/Contents/MacOS/Merrowd: No such file", result.stderr)
        self.assertIn("the server ended before it was ready", result.stderr)

    def test_ProcessorThatIsNotThere_IsAFailureWithAReason(self):
        result = subprocess.run([str(BUILD / "benchmarks/calls/call-stream"), "--client-cpu", "1000"], capture_output=True, text=True,
                                check=False)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("processor 1000: Invalid argument", result.stderr)


if __name__ == "__main__":
    unittest.main()
