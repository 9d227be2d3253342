"""Runs the compiler as the cross build does, for sources that belong to the tests."""
import subprocess

from bundle_copy import MINIMUM, SOURCES

HEADERS = {"platform": SOURCES / "portability/include", "macos": SOURCES / "cmake/macos/include"}


def compile_source(code, architecture="x86_64", headers=tuple(HEADERS.values()), before=(), options=()):
    """Checks a source without writing an object file. The result has the exit status, the output that `options` request,
    and the error messages. `before` are header folders that are searched before those of the platform."""
    folders = [*before, *headers]
    return subprocess.run(
        ["clang++-14", "-target", f"{architecture}-apple-macosx{MINIMUM}", "-std=c++17", "-nostdinc++", "-nostdlibinc"]
        + [option for folder in folders for option in ("-isystem", folder)]
        + [*options, "-fsyntax-only", "-x", "c++", "-"],
        input=code, capture_output=True, text=True)
