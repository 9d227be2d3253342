"""clang-format would change nothing in the sources in C, C++ and Objective-C++."""
import os
import re
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

FORMATTER = "clang-format-14"  # other versions decide differently
FAULT = re.compile(r"^(\S+):(\d+):\d+: error: code should be clang-formatted", re.MULTILINE)
BATCH = 50


def problems(tree):
    sources = tree.sources()
    batches = [sources[begin:begin + BATCH] for begin in range(0, len(sources), BATCH)]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for result in pool.map(lambda batch: tree.run([FORMATTER, "--dry-run", "-Werror"], batch), batches):
            yield from faults(result)


def faults(result):
    places = FAULT.findall(result.stderr)
    first = dict(reversed(places))
    for path, count in Counter(path for path, _ in places).items():
        yield f"{path}:{first[path]}: not formatted ({count} places); {FORMATTER} -i {path} does it"
    if result.returncode and not places:
        yield f"{FORMATTER} failed: {result.stderr.strip()}"
