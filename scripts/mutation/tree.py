"""A copy of the checkout below build/, in which sources are changed, and its tests.

Tests run in namespaces of their own, because a changed program can send signals to any process and delete any file of /tmp. The
processes that they leave end with the namespace."""
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

TEST_PROGRAM = "[1]_include.cmake"  # CMake's list of the tests of a program ends like this
ISOLATION = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
# A change can make a variable unused and a comparison senseless. The changed file is compiled without these warnings.
IGNORED = ["pragmas", "all", "extra", "unused", "unused-variable", "unused-parameter", "unused-function", "unused-value",
           "unused-but-set-variable", "unused-but-set-parameter", "unused-const-variable", "unused-result", "empty-body",
           "conversion", "sign-conversion", "sign-compare", "logical-op", "duplicated-cond", "duplicated-branches",
           "type-limits", "return-type", "maybe-uninitialized", "parentheses", "tautological-compare", "bool-compare",
           "stringop-overflow", "stringop-overread", "array-bounds", "null-dereference", "nonnull", "overflow",
           "shift-count-overflow", "int-in-bool-context", "useless-cast", "useless-comparison"]


class Failed(Exception):
    """A step that must not fail has failed. The text is its output."""


def isolated(command, folder):
    """Returns the command so that it runs with its own /tmp and its own processes."""
    own = [] if os.geteuid() == 0 else ["--user", "--map-current-user", "--keep-caps"]
    script = 'mount -t tmpfs tmpfs /tmp && cd "$0" && exec "$@"'
    return [ISOLATION[0], *own, *ISOLATION[1:], "sh", "-c", script, str(folder), *command]


class Tree:
    def __init__(self, sources, jobs):
        self.sources = sources
        self.jobs = str(jobs)
        self.root = sources / "build/mutants/tree"
        self.build = self.root / "build/dev"
        self.inputs = {}  # by test program: the paths of all files that it is built from

    def files(self):
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=self.sources,
                                capture_output=True, text=True, check=True).stdout
        return [name for name in listed.split("\0") if name and (self.sources / name).is_file()]

    def update(self):
        """Copies the files of the checkout that differ from the copy, and removes those that are no longer there."""
        names = self.files()
        for name in names:
            source, copy = self.sources / name, self.root / name
            if copy.is_file() and not source.is_symlink() and copy.read_bytes() == source.read_bytes():
                continue
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.unlink(missing_ok=True)
            shutil.copy(source, copy, follow_symlinks=False)
        wanted = {self.root / name for name in names}
        for folder, subfolders, found in os.walk(self.root):
            if Path(folder) == self.root:
                subfolders[:] = [name for name in subfolders if name != "build"]
            for name in found:
                if Path(folder, name) not in wanted:
                    Path(folder, name).unlink()

    def configure(self):
        self.must(["cmake", "--preset", "dev"])
        programs = sorted(path for path in self.build.glob(f"tests/**/*{TEST_PROGRAM.replace('[', '[[]', 1)}"))
        for path in programs:
            program = path.with_name(path.name[:-len(TEST_PROGRAM)]).relative_to(self.build)
            listed = self.must(["ninja", "-C", str(self.build), "-t", "inputs", str(program)])
            self.inputs[str(program)] = set(listed.splitlines())

    def must(self, command):
        done = subprocess.run(command, cwd=self.root, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise Failed(" ".join(command) + "\n" + done.stdout[-4000:] + done.stderr[-4000:])
        return done.stdout

    def programs_with(self, name, near):
        """Returns the test programs that are built from a file: first those of its folder, then those of fewer files. With
        `near`, only those of its folder, unless it has none."""
        path = str(self.root / name)
        folder = str(Path("tests") / Path(name).parent)
        found = [program for program, inputs in self.inputs.items() if path in inputs]
        own = [program for program in found if program.startswith(folder + "/")]
        if near and own:
            return own
        return sorted(found, key=lambda program: (not program.startswith(folder + "/"), len(self.inputs[program])))

    def read(self, name):
        return (self.root / name).read_text()

    def write(self, name, text):
        """Writes a source as it was."""
        (self.root / name).write_text(text)

    def write_changed(self, name, text):
        """Writes a changed source. Line numbers stay the same for the tests and the compiler's messages."""
        pragmas = " ".join(f'_Pragma("GCC diagnostic ignored \\"-W{warning}\\"")' for warning in IGNORED)
        (self.root / name).write_text(f"{pragmas}\n#line 1\n{text}")

    def compiles(self, programs):
        command = ["ninja", "-C", str(self.build), f"-j{self.jobs}", *programs]
        return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False).returncode == 0

    def first_failure(self, programs, limit):
        """Runs the tests of the programs until one fails. Returns its name, "time-out" after `limit` seconds, or nothing.
        Raises Failed if the programs have no tests."""
        names = "|".join(Path(program).name for program in programs)
        command = ["ctest", "--test-dir", str(self.build), "--stop-on-failure", f"-j{self.jobs}", "--timeout", str(limit),
                   "--no-tests=error", "-R", f"^({names})\\."]
        process = subprocess.Popen(isolated(command, self.build), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                   start_new_session=True)
        try:
            output, _ = process.communicate(timeout=limit)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            return "time-out"
        if process.returncode == 0:
            return None
        failed = [line.split(" - ", 1)[1] for line in output.splitlines() if "(Failed)" in line or "(Timeout)" in line or
                  "(SEGFAULT)" in line or "(Subprocess" in line or "(ILLEGAL)" in line or "Exception" in line
                  if " - " in line]
        if not failed and "No tests were found" in output:
            raise Failed(output)
        return failed[0] if failed else output.splitlines()[-1] if output else f"status {process.returncode}"


def processors():
    return len(os.sched_getaffinity(0))


def complain(message):
    print(f"scripts/mutants: {message}", file=sys.stderr)
