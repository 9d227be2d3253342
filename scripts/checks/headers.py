"""Every header has a test file of its name, or a reason in scripts/checks/headers-without-test.txt.

The list has one line per header or folder, sorted: the end of its path, ": ", the reason. "Object.h" is every header of
this name, "alerts/Object.h" the one in a folder alerts; "sys/" is all headers below a folder sys. Tests that a reason
names must exist. Headers of the tests themselves are not asked for.
"""
import re
from pathlib import PurePosixPath

LIST = PurePosixPath("scripts/checks/headers-without-test.txt")
TEST = re.compile(r"(\w+Test)\.(?:c|cpp|m|mm|py)")
NAMED_TEST = re.compile(r"\b\w+Test\b")


def problems(tree):
    tests = {match[1] for path in tree.files if (match := TEST.fullmatch(path.name))}
    untested = [path for path in tree.headers() if "tests" not in path.parts and f"{path.stem}Test" not in tests]
    reasons, faults = read_list(tree)
    yield from faults
    for path in untested:
        if not any(names(key, path) for key in reasons):
            yield f"{path}: there is no {path.stem}Test, and no reason in {LIST}"
    for key, (line, reason) in reasons.items():
        if not any(names(key, path) for path in untested):
            yield f"{LIST}:{line}: {key} is not a header without a test"
        for test in NAMED_TEST.findall(reason):
            if test not in tests:
                yield f"{LIST}:{line}: there is no {test}"


def read_list(tree):
    """(key -> (line, reason), faults of the list itself)"""
    reasons, faults, last = {}, [], ""
    text = tree.read(LIST) if LIST in tree.files else ""
    for number, line in enumerate(text.splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        key, separator, reason = line.partition(": ")
        if not separator or not reason.strip():
            faults.append(f"{LIST}:{number}: {key} has no reason")
        if key <= last:
            faults.append(f"{LIST}:{number}: {key} is not in its place; the list is sorted by bytes")
        last = key
        reasons[key] = (number, reason)
    return reasons, faults


def names(key, path):
    """Whether an entry of the list names the header: by the end of its path, or by a folder."""
    return f"/{key}" in f"/{path}" if key.endswith("/") else f"/{path}".endswith(f"/{key}")
