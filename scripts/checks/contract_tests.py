"""The tests of what the platform promises include platform headers only, so that they would build on a Mac.

Which files these are is said in the build files below tests/portability: the sources of a dovrel_test whose comment says
"headers only". Headers of the tests that they include follow the same rule.
"""
import os
import re
from pathlib import PurePosixPath

TESTS = PurePosixPath("tests/portability")
PLATFORM = PurePosixPath("portability/include")
LIST = re.compile(r"^#[^\n]*headers only[^\n]*\n(?:#[^\n]*\n)*dovrel_test\((.*?)\)", re.MULTILINE | re.DOTALL)
INCLUDE = re.compile(r"^[ \t]*#[ \t]*(?:include|import)[ \t]*([<\"])([^>\"]+)[>\"]", re.MULTILINE)
SOURCE = re.compile(r"[\w./-]+\.(?:c|cpp|m|mm)\b")
# Besides those in portability/include and those of C++, which have no suffix.
STANDARD = re.compile(r"(?:gtest|gmock)/\w+\.h|(?:AppKit|Foundation)/\w+\.h"
                      r"|(?:sys/(?:file|mman|resource|socket|stat|time|types|un|wait|xattr)|dirent|dlfcn|errno|fcntl|limits|poll|pthread|pwd|sched|signal|spawn|stdint|stdio|stdlib"
                      r"|string|time|unistd)\.h|[a-z_]+")


def problems(tree):
    found = sorted(contract_tests(tree))
    if not found:
        yield f"{TESTS}: no build file says which tests include platform headers only"
    seen = set()
    while found:
        path = found.pop()
        if path in seen:
            continue
        seen.add(path)
        if path not in tree.files:
            yield f"{path}: the file is missing"
            continue
        text = tree.read(path)
        for match in INCLUDE.finditer(text):
            header = own_header(match, path, tree)
            if header:
                found.append(header)
            elif match[1] == '"' or not is_platform_header(match[2], tree):
                line = text.count("\n", 0, match.start()) + 1
                yield f"{path}:{line}: {match[2]} is not a header of the platform"


def contract_tests(tree):
    for path in tree.files:
        if path.name == "CMakeLists.txt" and path.is_relative_to(TESTS):
            for sources in LIST.findall(tree.read(path)):
                yield from (normalised(path.parent / name) for name in SOURCE.findall(sources))


def own_header(match, path, tree):
    """The header of the tests that a quoted include names: beside the file, or by its path from the top of the tree."""
    if match[1] == "<":
        return None
    for header in (normalised(path.parent / match[2]), PurePosixPath(match[2])):
        if header in tree.files and header.parts[0] == "tests":
            return header
    return None


def is_platform_header(name, tree):
    return PLATFORM / name in tree.files or STANDARD.fullmatch(name)


def normalised(path):
    return PurePosixPath(os.path.normpath(path))
