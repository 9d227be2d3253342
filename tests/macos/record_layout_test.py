"""Checks that the headers state the layout of every structure of the platform, in both widths, so that a structure
with another packing does not compile."""
import re
import shutil
import tempfile
import unittest
from pathlib import Path

from cross_compiler import HEADERS, compile_source

PLATFORM = {"AEDesc", "AEKeyDesc", "EventRecord", "FSCatalogInfo", "LSLaunchURLSpec", "kinfo_proc"}
C_LIBRARY = {"pthread_mutex_t", "stat", "timespec"}
PACKINGS = (1, 2, 4, 8)
RECORD = re.compile(r"^(?:typedef )?(?:struct|union)(?: \w+)? \{.*?^\}.*?;$", re.MULTILINE | re.DOTALL)
NAME = re.compile(r"^\}\s*(\w+);$|^(?:struct|union) (\w+)", re.MULTILINE)


class RecordLayout(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folders = {name: Path(folder.name, name) for name in HEADERS}
        for name, copy in self.folders.items():
            shutil.copytree(HEADERS[name], copy)

    def headers(self, name):
        return [path for path in sorted(self.folders[name].rglob("*.h")) if RECORD.search(path.read_text())]

    def compile(self, header, architecture, options=()):
        return compile_source(f'#include "{header}"', architecture, tuple(self.folders.values()), options=options)

    def layouts(self, header, architecture):
        """Returns the compiler's layout of all structures in a header and ignores what the header states about it."""
        result = self.compile(header, architecture, ["-Xclang", "-fdump-record-layouts-complete",
                                                     '-Dstatic_assert(...)=static_assert(true, "")'])
        self.assertEqual(result.returncode, 0, result.stderr)
        return re.sub(r":\d+:\d+\b", "", result.stdout)  # an unnamed record is named by its position

    def assert_packing_is_stated(self, headers, architecture, some_names):
        changed = set()
        for header in self.headers(headers):
            text = header.read_text()
            original = self.layouts(header, architecture)
            for record in RECORD.finditer(text):
                for packing in PACKINGS:
                    header.write_text(f"{text[:record.start()]}#pragma pack(push, {packing})\n{record[0]}\n"
                                      f"#pragma pack(pop)\n{text[record.end():]}")
                    if self.layouts(header, architecture) == original:
                        continue
                    name = next(filter(None, NAME.search(record[0]).groups()))
                    changed.add(name)
                    result = self.compile(header, architecture)
                    self.assertNotEqual(result.returncode, 0, f"{name} in {header.name} packed to {packing}")
                    self.assertIn("static_assert failed", result.stderr)
            header.write_text(text)
        self.assertLessEqual(some_names, changed)

    def test_HeadersAsTheyAre_Compile(self):
        for header in (header for name in HEADERS for header in self.headers(name)):
            for architecture in ("i386", "x86_64"):
                self.assertEqual(self.compile(header, architecture).stderr, "")

    def test_AnotherPackingOfThePlatformsRecords_DoesNotCompileFor32Bits(self):
        self.assert_packing_is_stated("platform", "i386", PLATFORM)

    def test_AnotherPackingOfThePlatformsRecords_DoesNotCompileFor64Bits(self):
        self.assert_packing_is_stated("platform", "x86_64", PLATFORM)

    def test_AnotherPackingOfTheCLibrarysRecords_DoesNotCompileFor32Bits(self):
        self.assert_packing_is_stated("macos", "i386", C_LIBRARY)

    def test_AnotherPackingOfTheCLibrarysRecords_DoesNotCompileFor64Bits(self):
        self.assert_packing_is_stated("macos", "x86_64", C_LIBRARY)
