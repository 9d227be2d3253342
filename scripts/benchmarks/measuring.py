"""Runs the rows' programs, interleaved in rounds."""
import json
import os
import platform
import subprocess
import sys
import time
from dataclasses import asdict, dataclass

from .installation import TOP, program
from .results import FORMAT

NOT_POSSIBLE = 3  # exit status of a program whose peer cannot do what the case asks for
PATIENCE = 120    # seconds that a program may take besides its measuring


@dataclass
class Plan:
    rows: list
    cases: list
    rounds: int
    seconds: float     # that each host calls, per case, row and round
    processors: list   # the one of the hosts, then the one of the server; one or two
    build_folder: object

    def minutes(self):
        """Roughly."""
        return len(self.rows) * len(self.cases) * self.rounds * (1.25 * self.seconds + 0.15) / 60


def measure(plan, environment, after_round):
    """Calls `after_round` with the results up to there. Returns the results.

    After an interrupt, the results have the rounds that were complete. If there are none, KeyboardInterrupt is raised.
    """
    results = {"format": FORMAT, "machine": machine(), "rounds": 0, "seconds": plan.seconds, "measurements": [], "left_out": [],
               "failures": []}
    impossible = set()
    try:
        for number in range(plan.rounds):
            begin = time.monotonic()
            measure_round(plan, number, environment, impossible, results)
            results["rounds"] = number + 1
            after_round(results)
            print(f"round {number + 1} of {plan.rounds}: {time.monotonic() - begin:.0f} s", file=sys.stderr, flush=True)
    except KeyboardInterrupt:
        if results["rounds"] == 0:
            raise
        results["interrupted"] = True
        for name in ("measurements", "failures"):
            results[name] = [entry for entry in results[name] if entry["round"] < results["rounds"]]
        after_round(results)
    return results


def measure_round(plan, number, environment, impossible, results):
    """`impossible`: pairs of case and row that are left out; those that are found are added."""
    for case in plan.cases:
        for row in rotated(plan.rows, number):
            if (case, row) not in impossible and not measure_once(plan, case, row, number, environment, results):
                impossible.add((case, row))


def rotated(rows, number):
    """Each round begins with another row, so that none always has the same place in time."""
    return [*rows[number % len(rows):], *rows[:number % len(rows)]]


def measure_once(plan, case, row, number, environment, results):
    """Adds an entry to the results. Returns whether the row can do what the case asks for."""
    entry = {**asdict(case), "row": row}
    command = [program(plan.build_folder, row), *case.arguments(plan.processors, plan.seconds)]
    try:
        result = subprocess.run(list(map(str, command)), env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                timeout=PATIENCE + 10 * plan.seconds, check=False)
    except subprocess.TimeoutExpired as failure:
        fail(results, {**entry, "round": number}, case, f"took longer than {failure.timeout:.0f} s")
        return True
    if result.returncode == NOT_POSSIBLE:
        results["left_out"].append({**entry, "reason": result.stderr.strip()})
        return False
    if result.returncode:
        message = result.stderr.strip().replace("\n", "; ") or f"ended with status {result.returncode}"
        fail(results, {**entry, "round": number}, case, message)
        return True
    results["measurements"].append({**entry, "round": number, **json.loads(result.stdout)})
    return True


def fail(results, entry, case, message):
    results["failures"].append({**entry, "message": message})
    print(f"scripts/benchmark: {entry['row']}, {case.title()}: {message}", file=sys.stderr, flush=True)


def machine():
    """What the figures depend on."""
    model = platform.machine()
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            model = next((line.split(":", 1)[1].strip() for line in file if line.startswith("model name")), model)
    except OSError:
        pass
    described = subprocess.run(["git", "-C", TOP, "describe", "--always", "--dirty"], capture_output=True, text=True, check=False)
    return {"processor": f"{os.cpu_count()} × {model}", "system": f"{platform.system()} {platform.release()}",
            "library": f"C library {platform.libc_ver()[1]}", "commit": f"commit {described.stdout.strip() or 'unknown'}",
            "load": f"load {os.getloadavg()[0]:.1f} at the beginning", "date": time.strftime("%Y-%m-%d %H:%M")}
