#!/usr/bin/env python3
"""Prints how many times as long as the hand-written codec each codec takes.

Reads what SerializationBenchmark wrote with --benchmark_out=FILE --benchmark_repetitions=N.
"""
import json
import re
import statistics
import sys

NAME = re.compile(r"(buildAndRead|build|read)(?:<(\w+)>|(ReusedFlatBuffersBuilder))/(\d+)$")
YARDSTICK = "HandWrittenCodec"


def medians(path):
    times = {}
    with open(path, encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            match = NAME.match(run["run_name"])
            if match and run["run_type"] == "iteration":
                work, codec, plain, payload = match.groups()
                times.setdefault((work, int(payload), codec or plain), []).append(run["cpu_time"])
    return {key: statistics.median(values) for key, values in times.items()}


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: ratios.py FILE")
    times = medians(sys.argv[1])
    print(f"{'work':<14}{'payload':>8}  {'codec':<30}{'ns':>8}{'ratio':>8}")
    for (work, payload, codec), time in sorted(times.items()):
        ratio = time / times[work, payload, YARDSTICK]
        print(f"{work:<14}{payload:>8}  {codec:<30}{time:>8.1f}{ratio:>8.2f}")


if __name__ == "__main__":
    main()
