"""The evaluation of scripts/benchmark, on figures whose results were computed by hand."""
import json
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

from benchmarks import cases, comparison, plot, results, table  # noqa: E402
from benchmarks.cases import Case  # noqa: E402

SMALL = {"kind": "calls", "mode": "one", "size": 64, "threads": 1, "hosts": 1}
SMALL_CASE = Case("calls", "one", 64)
SVG = "{http://www.w3.org/2000/svg}"


def entry(row, number, median, p99=None, **fields):
    return {**SMALL, "row": row, "round": number, "calls": 100, "median_us": median, "p99_us": p99 or 2 * median,
            "calls_per_second": 1e6 / median, **fields}


def file_of(measurements, **fields):
    rounds = 1 + max((measurement["round"] for measurement in measurements), default=0)
    return {"format": 1, "machine": {"processor": "2 × test", "date": "today"}, "rounds": rounds, "measurements": measurements,
            "left_out": [], "failures": [], **fields}


# Three rounds: R takes 10, 20 and 40 µs, ours 5, 30 and 24, so the ratios are 0.5, 1.5 and 0.6.
THREE_ROUNDS = [entry("stream", 0, 10), entry("dovrel", 0, 5, 11), entry("dovrel", 1, 30, 31), entry("stream", 1, 20),
                entry("stream", 2, 40), entry("dovrel", 2, 24, 90)]


class Summaries(unittest.TestCase):
    def test_Ratios_AreTakenWithinARound_AndTheirMedianCounts(self):
        ours = results.summaries(file_of(THREE_ROUNDS))[SMALL_CASE]["dovrel"]
        self.assertEqual(ours.ratios, [0.5, 1.5, 0.6])
        self.assertEqual(ours.ratio, 0.6)  # the medians would give 24 / 20

    def test_Times_AreMediansOverTheRounds(self):
        figures = results.summaries(file_of(THREE_ROUNDS))[SMALL_CASE]["dovrel"].figures
        self.assertEqual((figures["median_us"], figures["p99_us"]), (24, 31))
        self.assertEqual(results.summaries(file_of(THREE_ROUNDS))[SMALL_CASE]["stream"].ratio, 1)

    def test_RoundInWhichTheReferenceFailed_HasNoRatio(self):
        measurements = [measurement for measurement in THREE_ROUNDS if (measurement["row"], measurement["round"]) != ("stream", 1)]
        ours = results.summaries(file_of(measurements))[SMALL_CASE]["dovrel"]
        self.assertEqual(ours.ratios, [0.5, 0.6])
        self.assertEqual(ours.ratio, 0.55)
        self.assertEqual(ours.figures["median_us"], 24)

    def test_WithoutReference_ThereIsNoRatio(self):
        ours = results.summaries(file_of([entry("dovrel", 0, 5)]))[SMALL_CASE]["dovrel"]
        self.assertIsNone(ours.ratio)

    def test_Start_ComparesProcessorTime(self):
        figures = {"elapsed_ms": 9, "resident_kb": 2048, "libraries": 5}
        started = [{**SMALL, "kind": "start", "row": row, "round": 0, "calls": 5, "cpu_ms": time, **figures}
                   for row, time in (("stream", 2), ("dovrel", 7))]
        self.assertEqual(results.summaries(file_of(started))[Case("start", "one", 64)]["dovrel"].ratio, 3.5)
        self.assertIn("| posCallMethod | **3.50** | 7.00 ms | 9.00 ms | 2.0 MiB | 5 |", table.markdown(file_of(started)))


class Files(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "results.json"

    def test_SavedFile_IsReadBackTheSame(self):
        results.save(file_of(THREE_ROUNDS), self.path)
        self.assertEqual(results.load(self.path), file_of(THREE_ROUNDS))

    def test_FilesThatAreNotResults_AreRefusedWithTheirName(self):
        for text in ("", "[]", "{}", json.dumps({**file_of([]), "format": 2})):
            self.path.write_text(text, encoding="utf-8")
            with self.assertRaisesRegex(results.BadFile, "results.json"):
                results.load(self.path)

    def test_MissingFile_IsRefusedWithTheReason(self):
        with self.assertRaisesRegex(results.BadFile, "results.json: No such file"):
            results.load(self.path)


class Table(unittest.TestCase):
    def test_Cell_HasRatioMedianAndPercentile(self):
        self.assertIn("## One CPU\n\n| | 64 B |\n|---|--:|\n| R: stream socket | **1.00** · 20.0 µs / 40.0 µs |\n"
                      "| posCallMethod | **0.60** · 24.0 µs / 31.0 µs |\n", table.markdown(file_of(THREE_ROUNDS)))

    def test_EveryRound_IsListed(self):
        self.assertIn("| 64 B, one CPU | posCallMethod | 0.50 1.50 0.60 | 24.0 µs | 31.0 µs | 41,667 |",
                      table.markdown(file_of(THREE_ROUNDS)))

    def test_CaseThatARowCannotDo_HasADashAndAReason(self):
        measurements = [entry("stream", 0, 10), entry("packets", 0, 9), entry("stream", 0, 99, size=1 << 20)]
        left_out = [{**SMALL, "size": 1 << 20, "row": "packets", "reason": "the largest request has 65536 bytes"}]
        text = table.markdown(file_of(measurements, left_out=left_out))
        self.assertIn("| bare packets | **0.90** · 9.00 µs / 18.0 µs | – |", text)
        self.assertIn("- bare packets is left out where the largest request has 65536 bytes.", text)

    def test_Failure_IsNamedWithItsRound(self):
        failures = [{**SMALL, "row": "nng", "round": 1, "message": "a reply differs from its request"}]
        self.assertIn("- **nng failed** in round 2: a reply differs from its request",
                      table.markdown(file_of(THREE_ROUNDS, failures=failures)))

    def test_ThreadsAndHosts_HaveTablesOfTheirOwn(self):
        measurements = [entry("stream", 0, 10, mode="free"), entry("stream", 0, 20, mode="free", threads=8),
                        entry("dovrel", 0, 5, mode="free"), entry("dovrel", 0, 30, mode="free", threads=8),
                        entry("dovrel", 0, 50, mode="free", hosts=4)]
        text = table.markdown(file_of(measurements))
        self.assertIn("## Threads on one session, 64 B, not pinned\n\n| | 1 thread | 8 threads |", text)
        self.assertIn("| posCallMethod | **0.50** · 5.00 µs / 10.0 µs | **1.50** · 30.0 µs / 60.0 µs |", text)
        self.assertIn("| posCallMethod | **0.50** · 5.00 µs / 10.0 µs · 200,000/s | – · 50.0 µs / 100 µs · 20,000/s |", text)

    def test_TimesAndRatios_HaveAtLeastTwoDigits(self):
        for ratio, text in ((0.0464, "0.046"), (0.0996, "0.10"), (0.654, "0.65"), (12.345, "12.35")):
            self.assertEqual(table.number_text(ratio), text)
        for microseconds, text in ((0.254, "0.25 µs"), (9.99, "9.99 µs"), (9.996, "10.0 µs"), (99.96, "100 µs"), (999.4, "999 µs"),
                                   (999.6, "1.00 ms"), (9996, "10.0 ms"), (123456, "123 ms")):
            self.assertEqual(table.time_text(microseconds), text)


class Comparison(unittest.TestCase):
    def compare(self, old, new, tolerance=0.1):
        """Ratios of ours in each round; R always takes 10 µs."""
        files = [file_of([measurement for number, ratio in enumerate(ratios)
                          for measurement in (entry("stream", number, 10), entry("dovrel", number, 10 * ratio))])
                 for ratios in (old, new)]
        return comparison.compare(*files, tolerance)

    def test_RatioAboveToleranceAndAboveEveryOldRound_IsWorse(self):
        lines, worse = self.compare([1, 1.1, 0.9], [1.2, 1.3, 1.25])
        self.assertTrue(worse)
        self.assertIn("| 64 B, one CPU | posCallMethod | 1.00 | 1.25 | +25 % | worse |", lines)

    def test_RatioWithinTolerance_IsNotWorse(self):
        lines, worse = self.compare([1, 1, 1], [1.09, 1.09, 1.09])
        self.assertFalse(worse)
        self.assertIn("| 64 B, one CPU | posCallMethod | 1.00 | 1.09 | +9 % |  |", lines)
        self.assertTrue(self.compare([1, 1, 1], [1.09, 1.09, 1.09], tolerance=0.05)[1])

    def test_RatioThatTheOldRoundsAlsoReached_IsNotWorse(self):
        self.assertFalse(self.compare([1, 1.3, 0.9], [1.2, 1.3, 1.25])[1])

    def test_RatioBelowEveryOldRound_IsBetter(self):
        lines, worse = self.compare([1, 1.1, 0.9], [0.5, 0.5, 0.5])
        self.assertFalse(worse)
        self.assertIn("| 64 B, one CPU | posCallMethod | 1.00 | 0.50 | -50 % | better |", lines)

    def test_OtherRow_IsListedButDoesNotCount(self):
        old = file_of([entry("stream", 0, 10), entry("nng", 0, 10)])
        new = file_of([entry("stream", 0, 10), entry("nng", 0, 30)])
        lines, worse = comparison.compare(old, new, 0.1)
        self.assertFalse(worse)
        self.assertIn("| 64 B, one CPU | nng | 1.00 | 3.00 | +200 % | worse |", lines)

    def test_ChangeOfTheReferenceAndMissingRows_AreTold(self):
        old = file_of([entry("stream", 0, 10), entry("dovrel", 0, 10), entry("nng", 0, 10)])
        new = file_of([entry("stream", 0, 15), entry("dovrel", 0, 15)])
        lines = comparison.compare(old, new, 0.1)[0]
        self.assertIn("R itself changed by +50 % to +50 %.", lines)
        self.assertIn("Only in the old file: 1 rows of cases.", lines)

    def test_FilesWithNothingInCommon_AreNotWorse(self):
        lines, worse = comparison.compare(file_of(THREE_ROUNDS), file_of([entry("dovrel", 0, 1, size=4096)]), 0.1)
        self.assertEqual((lines, worse), (["The files have no case and row in common."], False))


class Plot(unittest.TestCase):
    def test_Ticks_EncloseTheRatios(self):
        self.assertEqual([round(value, 9) for value in plot.ticks(0.3, 4)], [0.2, 0.5, 1, 2, 5])
        self.assertEqual([round(value, 9) for value in plot.ticks(0.05, 10)], [0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10])
        self.assertEqual([round(value, 9) for value in plot.ticks(0.3, 4000)], [0.1, 1, 10, 100, 1000, 10000])

    def test_Picture_IsWellFormedAndShowsEveryRow(self):
        measurements = [*THREE_ROUNDS, entry("capnp", 0, 40), entry("stream", 0, 10, size=4096), entry("dovrel", 0, 2, size=4096)]
        root = ElementTree.fromstring(plot.svg(file_of(measurements)))
        self.assertEqual(root.tag, f"{SVG}svg")
        texts = [text.text for text in root.iter(f"{SVG}text")]
        for expected in ("One CPU", "64 B", "4 KiB", "R", "posCallMethod", "Cap'n Proto"):
            self.assertIn(expected, texts)
        self.assertNotIn("ZeroMQ", texts)

    def test_Points_AreHigherForLargerRatios_AndWithinThePicture(self):
        measurements = [entry("stream", 0, 10), entry("dovrel", 0, 2), entry("stream", 0, 10, size=4096),
                        entry("dovrel", 0, 90, size=4096)]
        root = ElementTree.fromstring(plot.svg(file_of(measurements)))
        line = next(root.iter(f"{SVG}polyline")).attrib["points"]
        (x1, y1), (x2, y2) = (map(float, point.split(",")) for point in line.split())
        self.assertLess(x1, x2)
        self.assertGreater(y1, y2)
        for x, y in ((x1, y1), (x2, y2)):
            self.assertTrue(0 < x < plot.PANEL_WIDTH and 0 < y < plot.PANEL_HEIGHT)

    def test_NothingMeasured_IsAPictureWithoutPanels(self):
        ElementTree.fromstring(plot.svg(file_of([])))

    def test_EveryRowButTheReference_HasAStyle(self):
        self.assertEqual(set(plot.STYLES), set(results_rows()) - {"stream"})


def results_rows():
    from benchmarks import rows
    return rows.ROWS


class Cases(unittest.TestCase):
    def test_Cases_EachOnce(self):
        found = cases.cases(["calls", "threads", "hosts"], ["one", "free"], [64], [1, 8], [1, 4], 2)
        self.assertEqual(found, [Case("calls", "one", 64), Case("calls", "free", 64), Case("calls", "free", 64, threads=8),
                                 Case("calls", "free", 64, hosts=4)])

    def test_OneProcessor_HasNoModeTwo(self):
        found = cases.cases(["calls", "first", "start"], ["one", "two"], [64], [1], [1], 1)
        self.assertEqual(found, [Case("calls", "one", 64), Case("first", "one", 64), Case("start", "one", 64)])

    def test_Sizes_AreReadAndWritten(self):
        for text, size, shown in (("64", 64, "64 B"), ("4KiB", 4096, "4 KiB"), ("64k", 65536, "64 KiB"), ("16M", 16 << 20, "16 MiB"),
                                  ("100B", 100, "100 B")):
            self.assertEqual(cases.parse_size(text), size)
            self.assertEqual(cases.size_text(size), shown)
        for text in ("", "0", "-1", "4GB", "x", "2048M", "K"):
            with self.assertRaises(ValueError):
                cases.parse_size(text)

    def test_Placement_IsGivenToTheProgram(self):
        self.assertEqual(Case("calls", "two", 64).arguments([1, 0], 0.2)[-4:], ["--client-cpu", "1", "--server-cpu", "0"])
        self.assertEqual(Case("calls", "one", 64).arguments([1, 0], 0.2)[-4:], ["--client-cpu", "1", "--server-cpu", "1"])
        self.assertEqual(Case("calls", "idle", 64).arguments([1, 0], 0.2)[-2:], ["--pause", "1000"])
        self.assertNotIn("--client-cpu", Case("calls", "free", 64).arguments([1, 0], 0.2))


if __name__ == "__main__":
    unittest.main()
