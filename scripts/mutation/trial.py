"""One change: build, run tests, restore."""
import time

from . import places
from .tree import complain

# The programs are tried this many at a time, those of the file's own folder first, so that most changes never reach the last ones:
# all tests together take minutes.
AT_A_TIME = 4
SLOWEST = 600.0  # in seconds, for one program without a change


class Baseline:
    """What the test programs do without a change."""

    def __init__(self, tree):
        self.tree = tree
        self.limits = {}  # by program: the seconds after which its tests count as hanging
        self.failing = []  # programs whose tests fail without a change

    def usable(self, programs):
        """Returns the programs whose tests pass without a change. Each is built and run once."""
        for program in programs:
            if program not in self.limits:
                self.measure(program)
        return [program for program in programs if self.limits[program]]

    def measure(self, program):
        begin = time.monotonic()
        failure = "it does not compile" if not self.tree.compiles([program]) else None
        begin = time.monotonic()
        failure = failure or self.tree.first_failure([program], SLOWEST)
        if failure:
            complain(f"left out, because it fails without a change: {program}: {failure}")
            self.failing.append(program)
        self.limits[program] = 0 if failure else 30 + 4 * (time.monotonic() - begin)


def exit_status(counts, failing):
    """Returns the exit status for the number of changes by result and the programs that fail without a change. If no change
    could be tested, nothing is known about the tests, so this is a failure."""
    return 0 if counts["killed"] and not counts["survived"] and not failing else 1


def try_change(tree, baseline, name, change, near=False):
    """Returns the result and what it is based on. With `near`, only the tests of the file's folder are run."""
    original = tree.read(name)  # of the copy: the checkout may change in the meantime
    text = places.changed(original, change)
    programs = tree.programs_with(name, near)
    tried = 0
    try:
        for begin in range(0, len(programs), AT_A_TIME):
            tree.write(name, original)
            batch = baseline.usable(programs[begin:begin + AT_A_TIME])
            if not batch:
                continue
            tree.write_changed(name, text)
            if not tree.compiles(batch):
                return "not compiled", "no program"
            failure = tree.first_failure(batch, sum(baseline.limits[program] for program in batch))
            if failure:
                return "killed", failure
            tried += len(batch)
        return "survived", f"{tried} test programs"
    finally:
        tree.write(name, original)
