"""clang-tidy finds none of the faults that .clang-tidy lists in the library, the layer below it, and the server.

It reads how the sources are compiled in build/dev, which is configured if it is not there yet. Tests, benchmarks and fuzz
targets are left out: they take three times as long as all the rest, and the sanitizers run them.
"""
import json
import os
import re
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path, PurePosixPath

CHECKER = "clang-tidy-14"
BUILD = "build/dev"
LEFT_OUT = {"build", "tests", "benchmarks", "fuzz"}
FAULT = re.compile(r"^([^\s:]+):(\d+):\d+: ((?:warning|error): .*)$", re.MULTILINE)


def problems(tree):
    commands = tree.root / BUILD / "compile_commands.json"
    if not commands.exists():
        configured = tree.run(["cmake", "--preset", "dev"], [])
        if configured.returncode:
            yield f"cmake --preset dev failed: {configured.stderr.strip()}"
            return
    sources = compiled_sources(tree, commands)
    if not sources:
        yield f"{commands.relative_to(tree.root)} names no source of the library"
    seen = set()
    options = compiler_options()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, result in pool.map(lambda source: (source, check(tree, source, options)), sources):
            faults = [fault for fault in found_in(result, tree) if fault not in seen]
            seen.update(faults)
            yield from faults
            if result.returncode and not FAULT.search(result.stdout):
                yield f"{source}: {CHECKER} failed: {result.stderr.strip()}"


def compiled_sources(tree, commands):
    """Not those in C, which the options below are not for."""
    paths = {Path(entry["file"]) for entry in json.loads(commands.read_text())}
    relative = (PurePosixPath(path.relative_to(tree.root)) for path in paths if path.is_relative_to(tree.root))
    return sorted(path for path in relative if path.parts[0] not in LEFT_OUT and path.suffix != ".c")


def compiler_options():
    """Returns options for what gcc assumes and the checker does not: the standard, and the folder of Objective-C's header."""
    headers = subprocess.run(["g++", "-print-file-name=include"], capture_output=True, text=True, check=True).stdout
    return ["--extra-arg=-std=gnu++17", "--extra-arg=-idirafter", f"--extra-arg={headers.strip()}"]


def check(tree, source, options):
    return tree.run([CHECKER, "--quiet", "-p", BUILD, *options], [source])


def found_in(result, tree):
    """The faults by their place in the tree. Headers are found by links in the build folder."""
    for path, line, text in FAULT.findall(result.stdout):
        place = Path(os.path.realpath(tree.root / path))
        yield f"{place.relative_to(tree.root) if place.is_relative_to(tree.root) else place}:{line}: {text}"
