"""Result files, and what they say: per case and row the medians of the rounds, and the ratios to R of the rounds.

A result file is one JSON object:
  format        1
  machine       what it was measured on, for people
  rounds        number of rounds
  measurements  a list; each has the fields of its case (kind, mode, size, threads, hosts), row, round, and the figures that
                the row's program printed
  left_out      a list of what a row cannot do: case, row, reason
  failures      a list of what went wrong: case, row, round, message
"""
import json
import statistics
from collections import defaultdict
from dataclasses import dataclass, field

from .cases import Case
from .rows import REFERENCE

FORMAT = 1
CASE_FIELDS = ("kind", "mode", "size", "threads", "hosts")
TIME = {"calls": "median_us", "first": "median_us", "start": "cpu_ms"}  # the figure that is compared


class BadFile(Exception):
    """A file that is not a result file."""


@dataclass
class Summary:
    figures: dict                               # the median over the rounds of every figure
    ratios: list = field(default_factory=list)  # to R, one for each round in which both were measured

    @property
    def ratio(self):
        return statistics.median(self.ratios) if self.ratios else None


def load(path):
    try:
        with open(path, encoding="utf-8") as file:
            results = json.load(file)
    except OSError as failure:
        raise BadFile(f"{path}: {failure.strerror}") from failure
    except ValueError as failure:
        raise BadFile(f"{path} is not JSON: {failure}") from failure
    if not isinstance(results, dict) or results.get("format") != FORMAT or "measurements" not in results:
        raise BadFile(f"{path} is not a result file of scripts/benchmark (format {FORMAT})")
    return results


def save(results, path):
    with open(path, "w", encoding="utf-8") as file:
        json.dump(results, file, indent=1)
        file.write("\n")


def case_of(entry):
    return Case(*(entry[name] for name in CASE_FIELDS))


def summaries(results):
    """case -> row -> Summary, both in the order of the file."""
    rounds = defaultdict(lambda: defaultdict(dict))  # case -> row -> round -> figures
    for entry in results["measurements"]:
        figures = {name: value for name, value in entry.items() if name not in (*CASE_FIELDS, "row", "round")}
        rounds[case_of(entry)][entry["row"]][entry["round"]] = figures
    return {case: {row: summary(case, by_round, rows.get(REFERENCE, {})) for row, by_round in rows.items()}
            for case, rows in rounds.items()}


def summary(case, by_round, reference):
    figures = list(by_round.values())
    time = TIME[case.kind]
    return Summary(
        figures={name: statistics.median(entry[name] for entry in figures) for name in figures[0]},
        ratios=[entry[time] / reference[number][time] for number, entry in sorted(by_round.items())
                if number in reference and reference[number][time] > 0])
