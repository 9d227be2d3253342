"""The compiler as the cross build runs it, for sources of the tests' own."""
import subprocess

from bundle_copy import MINIMUM, SOURCES

HEADERS = {"platform": SOURCES / "portability/include", "macos": SOURCES / "cmake/macos/include"}


def compile_source(code, architecture="x86_64", headers=tuple(HEADERS.values()), before=(), options=()):
    """Looks through a source without making anything of it: its exit status, what the compiler shows (options make it
    show things) and its complaints. `before` are folders of headers in front of those of the platform."""
    folders = [*before, *headers]
    return subprocess.run(
        ["clang++-14", "-target", f"{architecture}-apple-macosx{MINIMUM}", "-std=c++17", "-nostdinc++", "-nostdlibinc"]
        + [option for folder in folders for option in ("-isystem", folder)]
        + [*options, "-fsyntax-only", "-x", "c++", "-"],
        input=code, capture_output=True, text=True)
