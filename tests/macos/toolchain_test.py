"""Checks what the cross build refuses to compile and to link, and what its steps do with their input."""
import subprocess
import tempfile
import unittest
from pathlib import Path

from bundle_copy import BUILD, CALL, MINIMUM, SOURCES, TABLE, TOOLS, BundleCopyTest, run
from cross_compiler import compile_source

import constants
import imports


class Compiling(unittest.TestCase):
    def compile(self, code):
        """Returns the compiler's messages about a C++ source, compiled like those of the library."""
        folders = [BUILD / "cmake/macos/site", "/usr/lib/llvm-14/include/c++/v1"]
        return compile_source(code, before=folders).stderr

    def test_WhatTheMinimumVersionHas_Compiles(self):
        self.assertEqual(self.compile("#include <mutex>\nvoid f(std::mutex& m) { m.lock(); }"), "")

    def test_WhatAppearedLater_DoesNotCompile(self):
        self.assertIn("introduced in macOS 10.12", self.compile("#include <shared_mutex>\nstd::shared_mutex m;"))

    def test_FunctionThatIsNotDeclared_DoesNotCompile(self):
        self.assertIn("undeclared", self.compile("#include <unistd.h>\nint f() { return fork(); }"))


class Linking(BundleCopyTest):
    def test_SymbolThatTheTableLacks_DoesNotLink(self):
        with self.assertRaisesRegex(AssertionError, "undefined symbol: _arc4random"):
            self.relink("x86_64", CALL.format("arc4random"))

    def test_SymbolNewerThanTheMinimumVersion_DoesNotLink(self):
        with self.assertRaisesRegex(AssertionError, "undefined symbol: _clock_gettime"):
            self.relink("x86_64", CALL.format("clock_gettime"))


class Sources(unittest.TestCase):
    """Every source of the library, including the parts that no exported function uses."""

    FILES = {
        "x86_64": BUILD / "cmake/macos/x86_64/objects.txt",
        "i386": BUILD / "cmake/macos/i386/modules.txt",
    }
    FOLDERS = ("InterProcessCommunication", "client", "platform", "serialization", "settings", "ui")
    # Symbols that the linker supplies, and functions that the compiler calls by itself.
    LINKER = {"___dso_handle", "dyld_stub_binder"}
    COMPILER = {"___bzero", "_memset", "_fwrite$UNIX2003", "_fputc", "_objc_exception_extract"}

    def imported(self, architecture):
        files = self.FILES[architecture].read_text().split()
        found = {"U": set(), "defined": set()}
        for line in run("llvm-nm-14", *files).splitlines():
            words = line.split()
            if len(words) >= 2:
                found["U" if words[-2] == "U" else "defined"].add(words[-1])
        return found["U"] - found["defined"] - self.LINKER

    def test_EverySourceOfTheLibrary_TakesPart(self):
        for architecture, files in self.FILES.items():
            compiled = {str(Path(name).relative_to(files.parent).with_suffix("")) for name in files.read_text().split()}
            written = {str(path.relative_to(SOURCES)) for folder in self.FOLDERS for path in (SOURCES / folder).rglob("*")
                       if path.suffix in (".c", ".cpp", ".m", ".mm")}
            self.assertEqual(sorted(compiled), sorted(written), architecture)

    def test_EveryImport_StandsInTheTableAndIsOldEnough(self):
        for architecture in imports.ARCHITECTURES:
            versions = {name: version for library in imports.read(TABLE)
                        for name, version in library.names(architecture).items()}
            found = self.imported(architecture)
            self.assertIn("_AESend", found)
            self.assertEqual(sorted(found - set(versions)), [])
            newer = [name for name in found if versions[name] and versions[name] > imports.version_number(MINIMUM)]
            self.assertEqual(newer, [])

    def test_EveryEntryOfTheTable_IsImported(self):
        found = set().union(*map(self.imported, imports.ARCHITECTURES), self.LINKER, self.COMPILER)
        for library in imports.read(TABLE):
            for architecture in imports.ARCHITECTURES:
                entries = {name for name, version in library.symbols[architecture].items()
                           if version is None or version <= imports.version_number(MINIMUM)}
                self.assertEqual(sorted(entries - found), [])


class Table(unittest.TestCase):
    def read(self, text):
        with tempfile.TemporaryDirectory() as folder:
            table = Path(folder, "table")
            table.write_text(text)
            return imports.read(table)

    def test_EverySymbolOfAnArchitecture_StandsInOneLibrary(self):
        for architecture in imports.ARCHITECTURES:
            names = [name for library in imports.read(TABLE) for name in library.names(architecture)]
            self.assertEqual(sorted(names), sorted(set(names)))

    def test_LibrariesInTheOutputOfLlvmsTools_HaveDifferentNames(self):
        # The tools print the last part of an install name, without its suffix.
        names = [Path(library.install_name).name.partition(".")[0] for library in imports.read(TABLE)]
        self.assertEqual(sorted(names), sorted(set(names)))

    def test_LineOfAnotherForm_IsRefusedWithItsNumber(self):
        for line in ("_f", "_f ten", "_f 10.0 arm64", "class NSObject", "[lib] /lib 1", "_g 10.0"):
            with self.subTest(line), self.assertRaisesRegex(ValueError, "table:3: "):
                self.read(f"[lib] /lib 1 1\n_g 10.0\n{line}\n")

    def test_SymbolBeforeAnyLibrary_IsRefused(self):
        with self.assertRaisesRegex(ValueError, "table:1: "):
            self.read("_f 10.0\n")


class Constants(unittest.TestCase):
    def test_NumbersInTheLoadersHeader_AreRead(self):
        self.assertEqual(constants.enumeration("BindOpcode").kSetSymbol, 0x40)
        self.assertEqual(constants.enumeration("RebaseOpcode").kRebaseManyWithGaps, 0x80)
        self.assertEqual(constants.enumeration("Command").kFixupsOnly, 0x80000022)


class Assembly(unittest.TestCase):
    """The step that prepares i386 assembly for its linker."""

    def rewrite(self, text):
        with tempfile.TemporaryDirectory() as folder:
            source, target = Path(folder, "in.s"), Path(folder, "out.s")
            source.write_text(text)
            result = subprocess.run([TOOLS / "i386-assembly", source, target], capture_output=True, text=True)
            return target.read_text().splitlines() if target.exists() else result.stderr

    def test_CallsIntoLibraries_GoThroughOneStubPerSymbol(self):
        lines = self.rewrite("_f:\n\tcalll\t_puts\n\tjmp\t_puts\n\tcalll\t_f\n")
        self.assertEqual(lines[1:4], ["\tcalll\tl_stub0$stub", "\tjmp\tl_stub0$stub", "\tcalll\t_f"])
        self.assertEqual(lines.count("\t.long\t_puts"), 1)

    def test_IndirectPointers_BecomePlainOnes(self):
        lines = self.rewrite("\tmovl\tL_x$non_lazy_ptr-L0$pb(%eax), %eax\n"
                             "\t.section\t__IMPORT,__pointers,non_lazy_symbol_pointers\n"
                             "L_x$non_lazy_ptr:\n\t.indirect_symbol\t_x\n\t.long\t0\n")
        self.assertEqual(lines[:5], ["\tmovl\tl_x$non_lazy_ptr-L0$pb(%eax), %eax", "\t.section\t__DATA,__nlptr",
                                     "\t.p2align\t2", "l_x$non_lazy_ptr:", "\t.long\t_x"])

    def test_PointersToSelectorsAndClasses_BecomePlainOnesWithSymbols(self):
        lines = self.rewrite("\tmovl\tL_OBJC_SELECTOR_REFERENCES_.4-L0$pb(%edi), %ecx\n"
                             "\t.section\t__OBJC,__message_refs,literal_pointers,no_dead_strip\n"
                             "L_OBJC_SELECTOR_REFERENCES_.4:\n\t.long\tL_OBJC_METH_VAR_NAME_.4\n"
                             "\t.section\t__OBJC,__cls_refs,literal_pointers,no_dead_strip\n"
                             "L_OBJC_CLASS_REFERENCES_:\n")
        self.assertEqual(lines[:6], ["\tmovl\tl_OBJC_SELECTOR_REFERENCES_.4-L0$pb(%edi), %ecx",
                                     "\t.section\t__OBJC,__message_refs,regular,no_dead_strip",
                                     "l_OBJC_SELECTOR_REFERENCES_.4:", "\t.long\tL_OBJC_METH_VAR_NAME_.4",
                                     "\t.section\t__OBJC,__cls_refs,regular,no_dead_strip",
                                     "l_OBJC_CLASS_REFERENCES_:"])

    def test_MarksOfClassesDefinedHere_AreLeftOut(self):
        lines = self.rewrite("\t.lazy_reference\t.objc_class_name_NSObject\n.set .objc_class_name_Own, 0\n"
                             "\t.globl\t.objc_class_name_Own\n\t.lazy_reference\t.objc_class_name_Own\n")
        self.assertEqual([line for line in lines if "objc" in line], ["\t.lazy_reference\t.objc_class_name_NSObject"])

    def test_WeakDefinition_IsRefused(self):
        self.assertIn("a weak definition is left", self.rewrite("\t.weak_definition\t__Z1fv\n"))
