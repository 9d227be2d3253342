"""Reads the parts of Mach-O files that the checks of a bundle need. Damaged files raise MachOError."""
import struct
from dataclasses import dataclass

FAT_MAGIC = 0xCAFEBABE
MAGICS = {0xFEEDFACE: 4, 0xFEEDFACF: 8}  # the size of a pointer
ARCHITECTURES = {0x7: "i386", 0x1000007: "x86_64"}

MH_BUNDLE = 8
MH_NOUNDEFS = 0x1
MH_TWOLEVEL = 0x80

LC_SEGMENT = 0x1
LC_SYMTAB = 0x2
LC_DYSYMTAB = 0xB
LC_LOAD_DYLIB = 0xC
LC_SEGMENT_64 = 0x19
LC_CODE_SIGNATURE = 0x1D
LC_DYLD_INFO = 0x22
LC_VERSION_MIN_MACOSX = 0x24
LC_REQ_DYLD = 0x80000000
# Weak, re-exported, lazy and upward dependencies, and search paths. Our bundle has none of them.
OTHER_DEPENDENCIES = {0x18 | LC_REQ_DYLD, 0x1F | LC_REQ_DYLD, 0x20, 0x23 | LC_REQ_DYLD, 0x1C | LC_REQ_DYLD}

# The number of variable-length numbers that follow each kind of opcode for rebasing or binding pointers. The
# kind is the upper half of the byte.
REBASE_NUMBERS = {0x20: 1, 0x30: 1, 0x60: 1, 0x70: 1, 0x80: 2}
BIND_NUMBERS = {0x20: 1, 0x60: 1, 0x70: 1, 0x80: 1, 0xA0: 1, 0xC0: 2}

N_STAB = 0xE0
N_TYPE = 0x0E
N_EXT = 0x01
PROTECTION_WRITE = 2
PROTECTION_EXECUTE = 4


class MachOError(Exception):
    """The file is not a Mach-O file, or its kind is not supported."""


@dataclass
class Section:
    segment: str
    name: str
    address: int
    size: int
    flags: int


@dataclass
class Segment:
    name: str
    address: int
    size: int
    offset: int
    file_size: int
    protection: int
    sections: list


@dataclass
class Library:
    install_name: str
    current: str
    compatible: str


@dataclass
class Import:
    """A symbol of another image. `library` is None if the image names no library for it."""

    name: str
    library: Library


@dataclass
class Fixup:
    """A pointer that is changed when the image is loaded. `target` is the symbol bound to it, or None."""

    segment: Segment
    address: int
    target: Import = None


def packed_version(number):
    """Converts a version from a load command to text, without trailing zeros."""
    parts = [number >> 16, number >> 8 & 0xFF, number & 0xFF]
    while len(parts) > 1 and parts[-1] == 0:
        parts.pop()
    return ".".join(map(str, parts))


def text_at(data, position):
    return bytes(data[position : data.index(b"\0", position)]).decode("utf-8", "replace")


def uleb(data, position):
    """Reads a variable-length number. Returns (value, position after it)."""
    value = shift = 0
    while True:
        byte = data[position]
        value |= (byte & 0x7F) << shift
        shift += 7
        position += 1
        if not byte & 0x80:
            return value, position


class Image:
    """One architecture of a file."""

    def __init__(self, data):
        self.data = data
        magic, cpu, _, self.file_type, count, _, self.flags = struct.unpack_from("<7I", data)
        if magic not in MAGICS or cpu not in ARCHITECTURES:
            raise MachOError("no Mach-O image for an Intel processor")
        self.pointer_size = MAGICS[magic]
        self.architecture = ARCHITECTURES[cpu]
        self.segments, self.libraries, self.commands = [], [], {}
        position = 28 if self.pointer_size == 4 else 32
        for _ in range(count):
            kind, size = struct.unpack_from("<II", data, position)
            self._add_command(kind, position)
            position += size

    def _add_command(self, kind, position):
        if kind in (LC_SEGMENT, LC_SEGMENT_64):
            self.segments.append(self._segment(position))
        elif kind == LC_LOAD_DYLIB:
            name, _, current, compatible = struct.unpack_from("<4I", self.data, position + 8)
            versions = packed_version(current), packed_version(compatible)
            self.libraries.append(Library(text_at(self.data, position + name), *versions))
        self.commands.setdefault(kind & ~LC_REQ_DYLD if kind & ~LC_REQ_DYLD == LC_DYLD_INFO else kind, position)

    def _segment(self, position):
        word = "<4I" if self.pointer_size == 4 else "<4Q"
        name = self._fixed_text(position + 8)
        address, size, offset, file_size = struct.unpack_from(word, self.data, position + 24)
        position += 24 + struct.calcsize(word)
        _, protection, count, _ = struct.unpack_from("<4I", self.data, position)
        sections = []
        for number in range(count):
            sections.append(self._section(position + 16 + number * (68 if self.pointer_size == 4 else 80)))
        return Segment(name, address, size, offset, file_size, protection, sections)

    def _section(self, position):
        word = "<2I" if self.pointer_size == 4 else "<2Q"
        address, size = struct.unpack_from(word, self.data, position + 32)
        flags = struct.unpack_from("<5I", self.data, position + 32 + struct.calcsize(word))[4]
        return Section(self._fixed_text(position + 16), self._fixed_text(position), address, size, flags)

    def _fixed_text(self, position):
        return bytes(self.data[position : position + 16]).rstrip(b"\0").decode()

    def section(self, name):
        """Returns the first section with this name, or None."""
        return next((s for segment in self.segments for s in segment.sections if s.name == name), None)

    def _position(self, address):
        """Returns the position in the data of the byte that is loaded to the address."""
        for segment in self.segments:
            if segment.address <= address < segment.address + segment.file_size:
                return segment.offset + address - segment.address
        raise MachOError(f"nothing is loaded to {address:#x}")

    def word(self, address):
        return struct.unpack_from("<I" if self.pointer_size == 4 else "<Q", self.data, self._position(address))[0]

    def words(self, section):
        """Returns all pointers of a section that contains only pointers."""
        return [self.word(address) for address in range(section.address, section.address + section.size, self.pointer_size)]

    def text(self, address):
        return text_at(self.data, self._position(address))

    def minimum_version(self):
        """Returns the minimum version of macOS as text, or None if the image does not name one."""
        position = self.commands.get(LC_VERSION_MIN_MACOSX)
        return position and packed_version(struct.unpack_from("<I", self.data, position + 8)[0])

    def signature(self):
        """Returns (position, size) of the code signature, or None."""
        position = self.commands.get(LC_CODE_SIGNATURE)
        return position and struct.unpack_from("<II", self.data, position + 8)

    def relocation_count(self):
        """Returns the number of old-style relocations, which can change any segment."""
        position = self.commands[LC_DYSYMTAB]
        fields = struct.unpack_from("<18I", self.data, position + 8)
        return fields[15] + fields[17]

    def _import(self, name, ordinal):
        found = 1 <= ordinal <= len(self.libraries)
        return Import(name, self.libraries[ordinal - 1] if found else None)

    def undefined_symbols(self):
        """Yields the imported symbols in the symbol table."""
        position = self.commands[LC_SYMTAB]
        symbols, count, texts, _ = struct.unpack_from("<4I", self.data, position + 8)
        form = "<IBBHI" if self.pointer_size == 4 else "<IBBHQ"
        for number in range(count):
            name, kind, _, description, _ = struct.unpack_from(form, self.data, symbols + number * struct.calcsize(form))
            if not kind & N_STAB and kind & N_EXT and not kind & N_TYPE:
                yield self._import(text_at(self.data, texts + name), description >> 8)

    def exports(self):
        """Returns the exported names, sorted."""
        start, size = self._linking_data()[8:10]
        names, open_nodes = [], [(0, "")] if size else []
        while open_nodes:
            node, prefix = open_nodes.pop()
            terminal, position = uleb(self.data, start + node)
            if terminal:
                names.append(prefix)
            position += terminal
            children = self.data[position]
            position += 1
            for _ in range(children):
                edge = text_at(self.data, position)
                child, position = uleb(self.data, position + len(edge.encode()) + 1)
                open_nodes.append((child, prefix + edge))
        return sorted(names)

    def _linking_data(self):
        return struct.unpack_from("<10I", self.data, self.commands[LC_DYLD_INFO] + 8)

    def rebases(self):
        """Yields every pointer that is rebased."""
        start, size = self._linking_data()[:2]
        segment, address, position = None, 0, start
        while position < start + size:
            kind, low = self.data[position] & 0xF0, self.data[position] & 0x0F
            position += 1
            values = []
            for _ in range(REBASE_NUMBERS.get(kind, 0)):
                value, position = uleb(self.data, position)
                values.append(value)
            if kind == 0x20:
                segment, address = self.segments[low], self.segments[low].address + values[0]
            elif kind == 0x30:
                address += values[0]
            elif kind == 0x40:
                address += low * self.pointer_size
            count = low if kind == 0x50 else values[0] if kind in (0x60, 0x80) else kind == 0x70
            skip = values[-1] if kind in (0x70, 0x80) else 0
            for _ in range(count):
                yield Fixup(segment, address)
                address += self.pointer_size + skip

    def bindings(self):
        """Yields every pointer that is bound to a symbol of another image: at load time, at first use, or weakly."""
        linking_data = self._linking_data()
        for start, size in (linking_data[2:4], linking_data[4:6], linking_data[6:8]):
            yield from self._bindings(start, start + size)

    def _bindings(self, position, end):
        segment, address, ordinal, name = None, 0, 0, ""
        while position < end:
            kind, low = self.data[position] & 0xF0, self.data[position] & 0x0F
            position += 1
            values = []
            if kind == 0x40:
                name = text_at(self.data, position)
                position += len(name.encode()) + 1
            for _ in range(BIND_NUMBERS.get(kind, 0)):
                value, position = uleb(self.data, position)
                values.append(value)
            if kind == 0x10:
                ordinal = low
            elif kind == 0x20:
                ordinal = values[0]
            elif kind == 0x30:
                ordinal = -low
            elif kind == 0x70:
                segment, address = self.segments[low], self.segments[low].address + values[0]
            elif kind == 0x80:
                address = (address + values[0]) % 2**64
            skip = low * self.pointer_size if kind == 0xB0 else values[-1] if kind in (0xA0, 0xC0) else 0
            for _ in range(values[0] if kind == 0xC0 else kind in (0x90, 0xA0, 0xB0)):
                yield Fixup(segment, address, self._import(name, ordinal))
                address = (address + self.pointer_size + skip) % 2**64


def images(data):
    """Returns the images of a file by architecture. The file may contain one or several."""
    if len(data) < 32:
        raise MachOError("too short")
    magic, count = struct.unpack_from(">II", data)
    if magic != FAT_MAGIC:
        image = Image(data)
        return {image.architecture: image}
    result = {}
    for number in range(count):
        _, _, offset, size, _ = struct.unpack_from(">5I", data, 8 + 20 * number)
        image = Image(data[offset : offset + size])
        result[image.architecture] = image
    return result
