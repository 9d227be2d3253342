"""Reads virtual tables from object files of both systems."""
import re
import subprocess
from collections import defaultdict

import macho


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


class ElfObject:
    """A 64-bit object file of Linux."""

    def __init__(self, path):
        self.path = path

    def virtual_table(self, table):
        """Returns for each function of a table the list of its names, without the underscore that macOS adds. The list is
        empty for an empty slot."""
        symbols = output("llvm-readelf-14", "--symbols", "--wide", self.path)
        place = re.search(rf"^ *\d+: ([0-9a-f]+) +(\d+) OBJECT +\S+ +\S+ +(\d+) {re.escape(table)}$", symbols, re.MULTILINE)
        start, size, section = int(place[1], 16), int(place[2]), place[3]
        sections = output("llvm-readelf-14", "--sections", "--wide", self.path)
        name = re.search(rf"^ *\[ *{section}\] (\S+)", sections, re.MULTILINE)[1]

        relocations = output("llvm-readelf-14", "--relocations", "--wide", self.path)
        block = relocations[relocations.index(f"Relocation section '.rela{name}'") :].split("\n\n")[0]
        words = {}
        for offset, target in re.findall(r"^([0-9a-f]{16}) +\S+ +R_X86_64_64 +\S+ +(\S+) \+ 0$", block, re.MULTILINE):
            if start <= int(offset, 16) < start + size:
                words[(int(offset, 16) - start) // 8] = [target]
        # Before the functions are the offset to the beginning of the object and the type information.
        return [words.get(number, []) for number in range(2, size // 8)]


class MachOObject:
    """A 32-bit or 64-bit object file of macOS."""

    def __init__(self, path):
        self.path = path
        self.image, = macho.images(path).values()
        self.names = defaultdict(list)
        for address, name in re.findall(r"^([0-9a-f]+) [a-zA-Z] (_\S+)$", output("llvm-nm-14", path), re.MULTILINE):
            self.names[int(address, 16)].append(name[1:])

    def virtual_table(self, table):
        """As for ElfObject. The table ends at the next symbol or at the end of the section."""
        start = next(address for address, names in self.names.items() if table in names)
        sections = self.image.segments[0].sections
        section = next(s for s in sections if s.address <= start < s.address + s.size)
        end = min([address for address in self.names if address > start] + [section.address + section.size])

        # A line of a relocation: address, relative, length, external, kind,
        # scattered, symbol or section number.
        listing = output("llvm-objdump-14", "--macho", "--reloc", self.path)
        title = f"Relocation information ({section.segment},{section.name}) "
        size = self.image.pointer_size
        words = {}
        for line in listing[listing.index(title) :].split("\nRelocation information")[0].split("\n")[2:]:
            if line:
                offset, _, _, external, _, _, target, *_ = line.split()
                place = section.address + int(offset, 16)
                if start <= place < end:
                    words[(place - start) // size] = [target[1:]] if external == "True" else self.names[self.image.word(place)]
        return [words.get(number, []) for number in range(2, (end - start) // size)]
