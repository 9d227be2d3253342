"""Reads Mach-O files for the checks of a bundle. LLVM's tools read the format; this module reads their output."""
import functools
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

import tools

ARCHITECTURES = {"i386": 4, "x86_64": 8}  # with the size of a pointer

ROW = re.compile(r"^(\S+)\s+\S+\s+0x([0-9A-F]+)\s+(.*)$", re.MULTILINE)
# For each table of bindings: the position of the library and of the symbol in the columns after the address.
BINDING_TABLES = {"--bind": (2, 3), "--lazy-bind": (0, 1), "--weak-bind": (None, 2)}
UNDEFINED = re.compile(r"\(undefined[^)]*\) .*?(\S+)(?: \(from (\S+)\)| \(dynamically looked up\))?$", re.MULTILINE)
SLICE = re.compile(r"^architecture (\S+)$.*?^ *offset (\d+)$\s+size (\d+)$", re.MULTILINE | re.DOTALL)


class MachOError(Exception):
    """The file is not a Mach-O file for Intel processors, or it lacks a part."""


@dataclass(frozen=True)
class Section:
    segment: str
    name: str
    address: int
    size: int
    attributes: tuple


@dataclass(frozen=True)
class Segment:
    name: str
    address: int
    size: int
    offset: int
    file_size: int
    protection: str
    sections: tuple


@dataclass(frozen=True)
class Library:
    install_name: str
    compatible: str


@dataclass(frozen=True)
class Import:
    """A symbol of another image. `library` is None if the image names no library for it."""

    name: str
    library: Library


@dataclass(frozen=True)
class Fixup:
    """A pointer that is changed when the image is loaded. `target` is the symbol bound to it, or None."""

    segment: Segment
    address: int
    target: Import = None


def _output(*command):
    result = subprocess.run(list(map(str, command)), capture_output=True, text=True)
    if result.returncode:
        raise MachOError(result.stderr.strip())
    return result.stdout


def _fields(text):
    """Returns the fields of a part of a load command. A field is a line with a name and a value."""
    return dict(words for words in (line.strip().split(None, 1) for line in text.splitlines()) if len(words) == 2)


def _number(text):
    """Returns the number at the beginning of a value. Addresses are hexadecimal."""
    return int(text.split()[0], 0)


def _segment(command):
    segment, *sections = map(_fields, re.split(r"^Section$", command, flags=re.MULTILINE))
    return Segment(
        segment.get("segname", ""), *(_number(segment[name]) for name in ("vmaddr", "vmsize", "fileoff", "filesize")),
        segment["initprot"],
        tuple(Section(fields.get("segname", ""), fields["sectname"], _number(fields["addr"]), _number(fields["size"]),
                      tuple(fields["attributes"].split())) for fields in sections))


class Image:
    """One architecture of a file. `data` contains its bytes."""

    def __init__(self, path, architecture, data):
        self.path, self.architecture, self.data = path, architecture, data
        self.pointer_size = ARCHITECTURES[architecture]
        header, *commands = re.split(r"^Load command \d+$", self._objdump("--private-headers"), flags=re.MULTILINE)
        _, _, _, _, self.file_type, _, _, *self.flags = header.splitlines()[-1].split()
        self.segments, self.libraries, self.commands = [], [], {}
        for command in commands:
            fields = _fields(command)
            if fields["cmd"].startswith("LC_SEGMENT"):
                self.segments.append(_segment(command))
            elif fields["cmd"] == "LC_LOAD_DYLIB":
                compatible = re.sub(r"(\.0)+$", "", fields["compatibility"].removeprefix("version "))
                self.libraries.append(Library(re.sub(r" \(offset \d+\)$", "", fields["name"]), compatible))
            self.commands.setdefault(fields["cmd"], fields)

    @functools.cache
    def _objdump(self, *options):
        return _output(tools.llvm("objdump"), "--macho", f"--arch={self.architecture}", *options, self.path)

    def command(self, name):
        """Returns the fields of the first load command of this kind."""
        if name not in self.commands:
            raise MachOError(f"there is no load command {name}")
        return self.commands[name]

    def section(self, name):
        """Returns the first section with this name, or None."""
        return next((s for segment in self.segments for s in segment.sections if s.name == name), None)

    def _bytes(self, address):
        """Returns the bytes from this address to the end of its segment in the file."""
        for segment in self.segments:
            if segment.address <= address < segment.address + segment.file_size:
                return self.data[segment.offset + address - segment.address : segment.offset + segment.file_size]
        raise MachOError(f"the file has no content for the address {address:#x}")

    def word(self, address):
        return int.from_bytes(self._bytes(address)[: self.pointer_size], "little")

    def text(self, address):
        return self._bytes(address).partition(b"\0")[0].decode("utf-8", "replace")

    def signature(self):
        """Returns (position, size) of the code signature, or None."""
        fields = self.commands.get("LC_CODE_SIGNATURE")
        return fields and (int(fields["dataoff"]), int(fields["datasize"]))

    def relocation_count(self):
        """Returns the number of old-style relocations, which can change any segment."""
        return sum(int(self.command("LC_DYSYMTAB")[name]) for name in ("nextrel", "nlocrel"))

    def _import(self, name, short_name):
        # The tools print the last part of an install name, without its suffix.
        library = next((found for found in self.libraries
                        if Path(found.install_name).name.partition(".")[0] == short_name), None)
        return Import(name, library)

    def undefined_symbols(self):
        """Returns the imported symbols in the symbol table."""
        listing = _output(tools.llvm("nm"), "-m", "--undefined-only", f"--arch={self.architecture}", self.path)
        return [self._import(*match) for match in UNDEFINED.findall(listing)]

    def exports(self):
        """Returns the exported names."""
        return re.findall(r"^(?:0x[0-9A-F]+|\[re-export\])\s+(\S+)", self._objdump("--exports-trie"), re.MULTILINE)

    def _fixups(self, table):
        """Yields (segment, address, [further column]) for each row of a table of pointers."""
        segments = {segment.name: segment for segment in self.segments}
        for segment, address, columns in ROW.findall(self._objdump(table)):
            yield segments[segment], int(address, 16), columns.split()

    def rebases(self):
        """Yields every pointer that is rebased."""
        for segment, address, _ in self._fixups("--rebase"):
            yield Fixup(segment, address)

    def bindings(self):
        """Yields every pointer that is bound to a symbol of another image: at load time, at first use, or weakly."""
        for table, (library, symbol) in BINDING_TABLES.items():
            for segment, address, columns in self._fixups(table):
                yield Fixup(segment, address, self._import(columns[symbol], None if library is None else columns[library]))

    def disassembly(self, section_name):
        """Returns the listing of a code section, with addresses as numbers."""
        return self._objdump("--disassemble", "--no-symbolic-operands", "--no-show-raw-insn",
                             f"--section=__TEXT,{section_name}")


def images(path):
    """Returns the images of a file by architecture. The file may contain one or several."""
    architectures = _output(tools.llvm("lipo"), "-archs", path).split()
    if not set(architectures) <= set(ARCHITECTURES):
        raise MachOError(f"it contains code for {', '.join(architectures)}, not only for Intel processors")
    data = Path(path).read_bytes()
    slices = SLICE.findall(_output(tools.llvm("objdump"), "--macho", "--universal-headers", path))
    places = {name: (int(offset), int(size)) for name, offset, size in slices} or {architectures[0]: (0, len(data))}
    return {name: Image(path, name, data[offset : offset + size]) for name, (offset, size) in places.items()}
