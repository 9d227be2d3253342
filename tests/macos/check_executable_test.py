"""Runs scripts/check-bundle on bundles whose executable is deliberately damaged. Each must fail exactly the checks for its damage."""
import re
import struct

from bundle_copy import BUILD, CALL, EXPORTED, KEPT, MINIMUM, BundleCopyTest, run

# The numbers of load commands that tests change.
LC_DYSYMTAB, LC_LOAD_DYLIB, LC_VERSION_MIN_MACOSX, LC_VERSION_MIN_IPHONEOS, LC_FUNCTION_STARTS = 0xB, 0xC, 0x24, 0x25, 0x26

FORMAT = "executable: it is a Mach-O file"
ARCHITECTURES = "executable: it contains exactly i386 and x86_64"
EXPORTS = "it exports exactly the functions of the interface"
IMPORTS = "each import is in the table of imports and bound to the library given there"
LIBRARIES = "each library is in the table of imports"
MESSAGES = "executable: its architectures send the same messages"
CLASSES = "executable: its architectures use the same classes"


class CheckExecutable(BundleCopyTest):
    def test_OneArchitectureLess_Fails(self):
        self.executable.write_bytes(self.images()["x86_64"].data)
        self.assert_fails({ARCHITECTURES: "it contains x86_64"})

    def test_NoMachOFile_Fails(self):
        self.executable.write_bytes(b"\x7fELF" + bytes(100))
        self.assert_fails({FORMAT: "Invalid ELF class"})

    def test_EmptyFile_Fails(self):
        self.executable.write_bytes(b"")
        self.assert_fails({FORMAT: "not recognized as a valid object file"})

    def test_MissingFile_Fails(self):
        self.executable.unlink()
        self.assert_fails({FORMAT: "No such file"})

    def test_FileThatIsCutOff_Fails(self):
        data = self.executable.read_bytes()
        self.executable.write_bytes(data[: len(data) // 2])
        self.assert_fails({FORMAT: "extends past the end of the file"})

    def test_CodeForAnotherProcessor_Fails(self):
        source, code = self.folder / "other.c", self.folder / "other.o"
        source.write_text("int other;")
        run("clang-14", "-target", "arm64-apple-macos11", "-c", source, "-o", code)
        run("llvm-lipo-14", "-create", self.executable, code, "-output", self.executable)
        self.assert_fails({FORMAT: "it contains code for i386, x86_64, arm64"})

    def test_ProgramInsteadOfBundle_Fails(self):
        self.replace_in_slice("i386", 12, struct.pack("<I", 2))
        self.assert_fails({"i386: it is a bundle": "its type is EXECUTE"})

    def test_MissingFlag_Fails(self):
        flags, = struct.unpack_from("<I", self.images()["i386"].data, 24)
        for flag, meaning in ((0x80, "two-level bindings"), (0x1, "no undefined symbols")):
            with self.subTest(meaning):
                self.replace_in_slice("i386", 24, struct.pack("<I", flags & ~flag))
                self.assertEqual(self.check()[1]["i386: it is a bundle"], f"it is not marked as having {meaning}")

    def test_OneExportMore_Fails(self):
        for architecture in ("x86_64", "i386"):
            self.relink(architecture, f"{KEPT} void posExtra(void) {{}}", exports=["posExtra"])
        self.assert_fails({f"x86_64: {EXPORTS}": "_posExtra is not part of the interface",
                           f"i386: {EXPORTS}": "_posExtra is not part of the interface"})

    def test_OneExportUnderAnotherName_Fails(self):
        image = self.images()["i386"]
        # The export data contains names in pieces; the symbol table and the texts of the code contain them whole.
        piece = re.search(rb"(?<!pos)GetInfo\0", image.data).start()
        self.replace_in_slice("i386", piece, b"x")
        self.assert_fails({f"i386: {EXPORTS}": "_posGetInfo is missing; _posxetInfo is not part of the interface"})

    def test_UnlistedImport_Fails(self):
        table = self.changed_table("    _abort 10.0\n", "    _abort 10.0\n    _arc4random 10.0\n")
        for architecture in ("x86_64", "i386"):
            self.relink(architecture, CALL.format("arc4random"), table=table)
        self.assert_fails({f"x86_64: {IMPORTS}": "_arc4random is not in the table",
                           f"i386: {IMPORTS}": "_arc4random is not in the table"})

    def test_SymbolOfANewerSystem_Fails(self):
        for architecture in ("x86_64", "i386"):
            self.relink(architecture, CALL.format("clock_gettime"), known="10.12")
        self.assert_fails({f"x86_64: no import is newer than {MINIMUM}": "_clock_gettime is new in 10.12",
                           f"i386: no import is newer than {MINIMUM}": "_clock_gettime is new in 10.12"})

    def test_SymbolBoundToAnotherLibrary_Fails(self):
        table = self.changed_table("    _AESend 10.0\n", "    _AESendNothing 10.0\n")
        self.replace_text(table, "    _GetProcessPID 10.0\n", "    _GetProcessPID 10.0\n    _AESend 10.0\n")
        self.relink("x86_64", table=table)
        self.assert_fails({f"x86_64: {IMPORTS}": "_AESend is bound to /System/Library/Frameworks/ApplicationServices."})

    def test_SymbolOfAnyLibrary_Fails(self):
        self.relink("x86_64", CALL.format("nobody"), options=["-undefined", "dynamic_lookup"])
        status, failed = self.check()
        self.assertEqual(status, 1)
        self.assertIn("_nobody is not in the table", failed[f"x86_64: {IMPORTS}"])

    def test_SymbolBoundToNoLibrary_Fails(self):
        table = self.changed_table("    _AESend 10.0\n", "    _AESendNothing 10.0\n")
        self.relink("x86_64", table=table, options=["-undefined", "dynamic_lookup"])
        self.assertEqual(self.check()[1][f"x86_64: {IMPORTS}"], "_AESend is not bound to a library")

    def test_UnlistedLibrary_Fails(self):
        table = self.changed_table("[usr/lib/libobjc]", "[usr/lib/libz] /usr/lib/libz.1.dylib 1 1\n    _zlibVersion 10.0\n\n[usr/lib/libobjc]")
        self.relink("x86_64", CALL.format("zlibVersion"), table=table)
        self.assert_fails({f"x86_64: {LIBRARIES}": "/usr/lib/libz.1.dylib is not in the table",
                           f"x86_64: {IMPORTS}": "_zlibVersion is not in the table"})

    def test_NewerVersionOfALibrary_Fails(self):
        table = self.changed_table("/AppKit 1138 45\n", "/AppKit 1138 46\n")
        self.relink("x86_64", table=table)
        self.assert_fails({f"x86_64: {LIBRARIES}": "AppKit in version 46, not 45"})

    def test_PrivateFramework_Fails(self):
        name = "System/Library/PrivateFrameworks/Secret.framework/Secret"
        table = self.changed_table("[usr/lib/libobjc]", f"[usr/lib/libSecret] /{name} 1 1\n    _secret 10.0\n\n[usr/lib/libobjc]")
        self.relink("x86_64", CALL.format("secret"), table=table)
        self.assert_fails({"x86_64: no framework is private": name, f"x86_64: {LIBRARIES}": name,
                           f"x86_64: {IMPORTS}": "_secret"})

    def test_SearchPath_Fails(self):
        self.relink("x86_64", options=["-rpath", "@loader_path"])
        self.assert_fails({f"x86_64: {LIBRARIES}": "LC_RPATH is not allowed"})

    def test_DependencyOfAnotherKind_Fails(self):
        position = self.command_position("i386", LC_LOAD_DYLIB)
        for kind, name in ((0x80000018, "LC_LOAD_WEAK_DYLIB"), (0x8000001F, "LC_REEXPORT_DYLIB"), (0x20, "LC_LAZY_LOAD_DYLIB"),
                           (0x80000023, "LC_LOAD_UPWARD_DYLIB")):
            with self.subTest(name):
                self.replace_in_slice("i386", position, struct.pack("<I", kind))
                self.assertIn(f"the load command {name} is not allowed", self.check()[1][f"i386: {LIBRARIES}"])

    def test_NoMinimumVersion_Fails(self):
        position = self.command_position("i386", LC_VERSION_MIN_MACOSX)
        self.replace_in_slice("i386", position, struct.pack("<I", LC_VERSION_MIN_IPHONEOS))
        self.assert_fails({f"i386: its minimum version is {MINIMUM}": "there is no load command LC_VERSION_MIN_MACOSX"})

    def test_AnotherMinimumVersion_Fails(self):
        for architecture in ("x86_64", "i386"):
            self.relink(architecture, minimum="10.9")
        self.assert_fails({f"x86_64: its minimum version is {MINIMUM}": "it is 10.9",
                           f"i386: its minimum version is {MINIMUM}": "it is 10.9"})

    def test_PointerInWriteProtectedSegment_Fails(self):
        image = self.images()["i386"]
        protection = image.data.index(b"__DATA\0") + 16 + 4 * 5
        self.replace_in_slice("i386", protection, struct.pack("<I", 1))
        self.assert_fails({"i386: its code needs no relocation": "in __DATA, which is write-protected"})

    def test_SectionWithRelocations_Fails(self):
        image = self.images()["i386"]
        flags = image.data.index(b"__text\0") + 56
        old, = struct.unpack_from("<I", image.data, flags)
        self.replace_in_slice("i386", flags, struct.pack("<I", old | 0x200))
        self.assert_fails({"i386: its code needs no relocation": "section __text has relocations"})

    def test_RelocationsOfTheOldKind_Fail(self):
        # One relocation at the end of the data that lists the starts of functions.
        starts = self.command_position("i386", LC_FUNCTION_STARTS) + 8
        offset, size = struct.unpack_from("<II", self.images()["i386"].data, starts)
        self.replace_in_slice("i386", starts, struct.pack("<II", offset, size - 8))
        relocations = struct.pack("<II", offset + size - 8, 1)
        self.replace_in_slice("i386", self.command_position("i386", LC_DYSYMTAB) + 8 + 4 * 16, relocations)
        self.assert_fails({"i386: its code needs no relocation": "1 relocations of the old kind"})

    def test_SegmentsThatOverlap_Fail(self):
        size = self.images()["i386"].data.index(b"__TEXT\0") + 16 + 4
        self.replace_in_slice("i386", size, struct.pack("<I", 0x100000))
        self.assert_fails({"i386: its segments are in order": "__DATA overlaps the segment before it"})

    def test_SegmentThatIsWritableAndExecutable_Fails(self):
        protection = self.images()["i386"].data.index(b"__TEXT\0") + 16 + 4 * 5
        self.replace_in_slice("i386", protection, struct.pack("<I", 7))
        self.assert_fails({"i386: its segments are in order": "__TEXT is both writable and executable"})

    def test_LinkingDataNotLast_Fails(self):
        self.relink("i386", in_order=False)
        self.assertIn("__OBJC is the last segment", self.check()[1]["i386: its segments are in order"])

    def test_CallThroughAFixedAddress_Fails(self):
        # These stubs come from the linker, because our assembly step has not processed this source.
        self.relink("i386", f"extern void abort(void); {KEPT} void posStop(void) {{ abort(); }}")
        self.assert_fails({"i386: its branches stay inside the code": "uses the pointer at the fixed address"})

    def test_CallOutOfTheCode_Fails(self):
        image = self.images()["i386"]
        text = image.section("__text")
        call = image.data.index(b"\xe8", text.address)
        self.replace_in_slice("i386", call + 1, struct.pack("<i", text.size))
        self.assertIn("outside the code", self.check()[1]["i386: its branches stay inside the code"])

    def test_ObjectiveCPointersThatTheLinkerMadeOne_Fails(self):
        # The compiler's labels begin with "L", so they are not symbols, as if our
        # assembly step did not handle them.
        assembly = self.folder / "merged.s"
        text = (BUILD / "cmake/macos/i386/Dovrel.s").read_text()
        assembly.write_text(re.sub(r"(?<![\w.$])l(?=_OBJC_(SELECTOR|CLASS)_REFERENCES_)", "L", text))
        self.relink("i386", objects=[self.compile("i386", assembly)])
        self.assert_fails({MESSAGES: "not in i386: UTF8String, addButtonWithTitle:", CLASSES: "not in i386: DovrelAlertHelp"})

    def test_CodeThatDoesNothing_Fails(self):
        functions = "".join(f"void {name}(void) {{}}\n" for name in EXPORTED.read_text().split())
        for architecture in ("x86_64", "i386"):
            empty = self.folder / f"empty.{architecture}.c"
            empty.write_text(functions)
            self.relink(architecture, objects=[self.compile(architecture, empty)])
        failed = self.check()[1]
        for architecture in ("x86_64", "i386"):
            self.assertEqual(failed[f"{architecture}: its branches stay inside the code"], "the listing contains no branch")
        self.assertEqual((failed[MESSAGES], failed[CLASSES]), ("the code contains none", "the code contains none"))

    def test_SelectorOutsideTheImage_Fails(self):
        image = self.images()["i386"]
        selector = struct.pack("<I", image.word(image.section("__message_refs").address))
        self.replace_in_slice("i386", image.data.index(selector), b"\xf0\xff\xff\x7f")
        self.assert_fails({MESSAGES: "no content for the address 0x7ffffff0"})

    def test_AnotherMessage_Fails(self):
        self.replace_in_slice("i386", self.images()["i386"].data.index(b"runModal\0"), b"x")
        self.assert_fails({MESSAGES: "not in i386: runModal; not in x86_64: xunModal"})

    def test_AnotherClass_Fails(self):
        self.replace_in_slice("i386", self.images()["i386"].data.index(b"NSAutoreleasePool\0"), b"x")
        self.assert_fails({CLASSES: "not in i386: NSAutoreleasePool; not in x86_64: xSAutoreleasePool"})

    def test_ChangedAfterSigning_Fails(self):
        image = self.images()["x86_64"]
        self.replace_in_slice("x86_64", image.data.index(b"Couldn't initialise"), b"c")
        self.assert_fails({"x86_64: its ad-hoc signature is valid": "was changed after signing"})

    def test_NotSigned_Fails(self):
        self.relink("x86_64", options=["-no_adhoc_codesign"])
        self.assert_fails({"x86_64: its ad-hoc signature is valid": "the image is not signed"})


    def test_SignatureOfAnotherKind_Fails(self):
        image = self.images()["x86_64"]
        place, _ = image.signature()
        directory = place + struct.unpack_from(">I", image.data, place + 16)[0]
        signature = image.data[place:]
        for position, content, fault in (
                (place, bytes(4), "the signature has no code directory"),
                (directory, bytes(4), "the signature has no code directory"),
                (directory + 12, bytes(4), "it is not an ad-hoc signature"),
                (directory + 32, bytes(4), "the signature does not cover the whole image with SHA-256"),
                (directory + 37, b"\1", "the signature does not cover the whole image with SHA-256")):
            with self.subTest(fault, position=position):
                self.replace_in_slice("x86_64", position, content)
                self.assert_fails({"x86_64: its ad-hoc signature is valid": fault})
                self.replace_in_slice("x86_64", place, signature)
