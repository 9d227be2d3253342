"""What scripts/benchmark does with its arguments, without building or measuring anything."""
import json
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]


def run(*arguments):
    return subprocess.run([str(SOURCES / "scripts/benchmark"), *map(str, arguments)], capture_output=True, text=True, check=False)


def results(ours):
    """One round; R takes 10 µs."""
    case = {"kind": "calls", "mode": "one", "size": 64, "threads": 1, "hosts": 1, "round": 0, "calls": 9, "calls_per_second": 1}
    return {"format": 1, "machine": {}, "rounds": 1, "left_out": [], "failures": [],
            "measurements": [{**case, "row": row, "median_us": time, "p99_us": time} for row, time in
                             (("stream", 10), ("dovrel", ours))]}


class Arguments(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def write(self, name, content):
        path = self.folder / name
        path.write_text(json.dumps(content), encoding="utf-8")
        return path

    def test_Help_ShowsExamplesAndExitStatus(self):
        result = run("--help")
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stdout, r"examples:\n  scripts/benchmark --setup")
        self.assertIn("Exit status", result.stdout)

    def test_WrongArguments_AreRefusedByName(self):
        for arguments, message in ((["--rows", "dovrel,carrier-pigeon"], "there is no row 'carrier-pigeon'; there are stream,"),
                                   (["--cases", "x"], "there is no case 'x'"), (["--modes", "x"], "there is no mode 'x'"),
                                   (["--sizes", "64,big"], "not a list of sizes such as 64,4KiB,1MiB: '64,big'"),
                                   (["--rounds", "0"], "not a number from 1 to 1000: '0'"), (["--seconds", "x"], "not a number from"),
                                   (["--threads", "0"], "not a list of numbers from 1 to 1000: '0'"),
                                   (["--cpus", "4095"], "not one or two processors of this process"),
                                   (["--setup", "--report", "x"], "not allowed with"), (["--unknown"], "unrecognized arguments")):
            result = run(*arguments)
            self.assertEqual(result.returncode, 2, arguments)
            self.assertIn(message, result.stderr)

    def test_Compare_TellsByItsStatusWhetherOursBecameWorse(self):
        fast, slow = self.write("fast.json", results(5)), self.write("slow.json", results(6))
        self.assertEqual(run("--compare", fast, fast).returncode, 0)
        worse = run("--compare", fast, slow)
        self.assertEqual(worse.returncode, 1)
        self.assertIn("| 64 B, one CPU | posCallMethod | 0.50 | 0.60 | +20 % | worse |", worse.stdout)
        self.assertEqual(run("--compare", slow, fast).returncode, 0)
        self.assertEqual(run("--compare", fast, slow, "--tolerance", 30).returncode, 0)

    def test_Compare_FileThatIsNotAResult_IsRefused(self):
        result = run("--compare", self.write("fast.json", results(5)), self.folder / "none.json")
        self.assertEqual(result.returncode, 2)
        self.assertIn("none.json: No such file", result.stderr)

    def test_Report_WritesTableAndPlotBesideTheFile(self):
        result = run("--report", self.write("results.json", results(5)))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("| posCallMethod | **0.50** · 5.00 µs / 5.00 µs |", (self.folder / "table.md").read_text(encoding="utf-8"))
        ElementTree.parse(self.folder / "plot.svg")

    def test_RowThatIsNotBuilt_IsRefusedWithItsPackages(self):
        program = self.folder / "benchmarks/calls/call-stream"
        program.parent.mkdir(parents=True)
        program.touch()
        result = run("--build", self.folder, "--rows", "nng")
        self.assertEqual(result.returncode, 1)
        self.assertIn("nng (packages: libnng-dev)", result.stderr)
        self.assertIn("scripts/benchmark --setup", result.stderr)

    def test_BuildFolderWithoutPrograms_IsRefused(self):
        result = run("--build", self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertIn("R (stream) is not built", result.stderr)


if __name__ == "__main__":
    unittest.main()
