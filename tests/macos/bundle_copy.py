"""Copies of the built bundle that a test may damage, and slices that are linked again with something added."""
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
TOOLS = SOURCES / "cmake/macos"
sys.path.insert(0, str(TOOLS))

import macho  # noqa: E402

TABLE = TOOLS / "imports.txt"
EXPORTED = SOURCES / "client/exports.txt"
MINIMUM = "10.7"

# Sources to link in: a symbol that no optimiser removes, and a call of another library's function.
KEPT = '__attribute__((used, visibility("default")))'
CALL = f"extern int {{0}}(); {KEPT} int (*posCalled)() = {{0}};"


def run(*command):
    """Runs a command that must succeed; shows its output if it fails."""
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode:
        raise AssertionError(f"{command[0]}: {result.stdout}{result.stderr}")
    return result.stdout


class BundleCopyTest(unittest.TestCase):
    """A test with a copy of the bundle in a separate folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.bundle = self.folder / "Dovrel.bundle"
        shutil.copytree(BUILD / "Dovrel.bundle", self.bundle)
        self.executable = self.bundle / "Contents/MacOS/Dovrel"
        self.property_list = self.bundle / "Contents/Info.plist"

    def check(self):
        """Runs the checker on the copy. Returns (exit status, {name of a failed check: what is wrong})."""
        result = subprocess.run([SOURCES / "scripts/check-bundle", self.bundle], capture_output=True, text=True)
        self.assertEqual(result.stderr, "")
        failed = re.findall(r"^FAIL (.*?: .*?): (.*)$", result.stdout, re.MULTILINE)
        self.assertEqual(len(failed), result.stdout.count("FAIL"), result.stdout)
        return result.returncode, dict(failed)

    def assert_fails(self, expected):
        """Expects exactly these checks to fail. Each value must be part of the line of its check."""
        status, failed = self.check()
        self.assertEqual(sorted(failed), sorted(expected))
        self.assertEqual(status, 1)
        for name, problem in expected.items():
            self.assertIn(problem, failed[name])

    def images(self):
        return macho.images(self.executable)

    def replace_in_slice(self, architecture, position, content):
        """Overwrites bytes of one slice. The position counts from the beginning of the slice."""
        data = bytearray(self.executable.read_bytes())
        start = data.index(self.images()[architecture].data) + position
        data[start : start + len(content)] = content
        self.executable.write_bytes(data)

    def command_position(self, architecture, number):
        """Returns the position of the first load command with this number in the slice."""
        image = self.images()[architecture]
        position = 28 if image.pointer_size == 4 else 32
        while True:
            found, size = struct.unpack_from("<II", image.data, position)
            if found == number:
                return position
            position += size

    def replace_text(self, path, old, new):
        """Replaces a text that occurs exactly once in the file."""
        text = path.read_text()
        self.assertEqual(text.count(old), 1, old)
        path.write_text(text.replace(old, new))

    def objects(self, architecture):
        """Returns the files from which the build has linked the slice."""
        if architecture == "i386":
            return [BUILD / "cmake/macos/i386/Dovrel.o"]
        return (BUILD / "cmake/macos/x86_64/objects.txt").read_text().split()

    def compile(self, architecture, source):
        """Compiles a source in C or assembly and returns its object file, prepared for the linker."""
        result = f"{source}.o"
        run("clang-14", "-target", f"{architecture}-apple-macosx{MINIMUM}", "-O1", "-c", source, "-o", result)
        if architecture == "i386":
            run("llvm-objcopy-14", "--remove-section", "__LD,__compact_unwind", "--remove-section", "__OBJC,__image_info",
                result)
        return result

    def changed_table(self, old, new):
        """Returns a copy of the table of imports in which a text is replaced."""
        table = self.folder / "imports.txt"
        shutil.copy(TABLE, table)
        self.replace_text(table, old, new)
        return table

    def relink(self, architecture, code="", options=(), table=TABLE, known=MINIMUM, minimum=MINIMUM, exports=(),
               in_order=True, objects=None):
        """Links one slice of the copy again. Each argument changes one thing: a source in C to add, options of the linker,
        the table, stubs with the functions of macOS `known`, the oldest system `minimum`, further exports, other objects."""
        added = self.folder / "added.c"
        added.write_text(code)
        stubs, output, listed = self.folder / f"stubs.{architecture}", self.folder / architecture, self.folder / "exports"
        listed.write_text("\n".join([EXPORTED.read_text(), *exports]))
        run(TOOLS / "make-stubs", "--table", table, architecture, known, stubs)
        run(TOOLS / "link-slice", "--table", table, architecture, minimum, stubs, listed, output,
            *(objects or self.objects(architecture)), self.compile(architecture, added), *options)
        if architecture == "i386" and in_order:
            run(TOOLS / "i386-order-segments", output)
        self.join({architecture: output})

    def join(self, slices):
        """Builds the executable from these slices and, for the other architectures, from the present ones."""
        paths = []
        for architecture, image in self.images().items():
            paths.append(slices.get(architecture, self.folder / f"{architecture}.old"))
            if architecture not in slices:
                paths[-1].write_bytes(image.data)
        run("llvm-lipo-14", "-create", *paths, "-output", self.executable)
