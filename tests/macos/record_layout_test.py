"""Every record in the headers of the platform is held in its layout, in both widths, so that none can be packed otherwise
and still compile."""
import re
import shutil
import tempfile
import unittest
from pathlib import Path

from cross_compiler import PORTABILITY, compile_source

FOLDERS = ("include", "include-darwin")
PACKINGS = (1, 2, 4, 8)
RECORD = re.compile(r"^(?:typedef )?(?:struct|union)(?: \w+)? \{.*?^\}.*?;$", re.MULTILINE | re.DOTALL)
NAME = re.compile(r"^\}\s*(\w+);$|^(?:struct|union) (\w+)", re.MULTILINE)


class RecordLayout(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.portability = Path(folder.name)
        for name in FOLDERS:
            shutil.copytree(PORTABILITY / name, self.portability / name)
        self.headers = [path for path in sorted(self.portability.rglob("*.h")) if RECORD.search(path.read_text())]
        self.code = "".join(f'#include "{header}"\n' for header in self.headers)

    def compile(self, architecture, options=()):
        return compile_source(self.code, architecture, self.portability, options=options)

    def layouts(self, architecture):
        """How the compiler lays out all records, whatever the headers state about it."""
        result = self.compile(architecture, ["-Xclang", "-fdump-record-layouts-complete",
                                             '-Dstatic_assert(...)=static_assert(true, "")'])
        self.assertEqual(result.returncode, 0, result.stderr)
        return re.sub(r":\d+:\d+\b", "", result.stdout)  # a record without a name is called after its place

    def assert_packing_is_stated(self, architecture):
        original = self.layouts(architecture)
        changed = set()
        for header in self.headers:
            text = header.read_text()
            for record in RECORD.finditer(text):
                for packing in PACKINGS:
                    header.write_text(f"{text[:record.start()]}#pragma pack(push, {packing})\n{record[0]}\n"
                                      f"#pragma pack(pop)\n{text[record.end():]}")
                    if self.layouts(architecture) == original:
                        continue
                    name = next(filter(None, NAME.search(record[0]).groups()))
                    changed.add(name)
                    result = self.compile(architecture)
                    self.assertNotEqual(result.returncode, 0, f"{name} in {header.name} packed to {packing}")
                    self.assertIn("static_assert failed", result.stderr)
            header.write_text(text)
        self.assertLessEqual({"AEDesc", "LSLaunchURLSpec", "FSCatalogInfo", "kinfo_proc", "stat", "pthread_mutex_t"}, changed)

    def test_HeadersAsTheyAre_Compile(self):
        for architecture in ("i386", "x86_64"):
            self.assertEqual(self.compile(architecture).stderr, "")

    def test_AnotherPackingOfARecord_DoesNotCompileFor32Bits(self):
        self.assert_packing_is_stated("i386")

    def test_AnotherPackingOfARecord_DoesNotCompileFor64Bits(self):
        self.assert_packing_is_stated("x86_64")
