"""The checks of one architecture of the bundle's executable.

Each check takes the image, the path of the executable and the names of the functions that it must export. It yields one text
for each fault, and nothing if there is none.
"""
import functools
import hashlib
import re
import struct
import subprocess

import imports
import macho

MINIMUM = "10.7"
LINKER_SYMBOLS = {"dyld_stub_binder"}  # the linker adds this symbol even if it is not bound
TEXT_RELOCATIONS = 0x300  # attributes of sections with external or local relocations

SIGNATURE_MAGIC = 0xFADE0CC0
CODE_DIRECTORY_MAGIC = 0xFADE0C02
CODE_DIRECTORY_ADHOC = 0x2
SHA256 = 2


def file_type(image, *_):
    if image.file_type != macho.MH_BUNDLE:
        yield f"type {image.file_type} is not that of a bundle"
    for flag, what in ((macho.MH_TWOLEVEL, "two-level bindings"), (macho.MH_NOUNDEFS, "no undefined symbols")):
        if not image.flags & flag:
            yield f"not marked as having {what}"


def exports(image, _, functions):
    expected = {"_" + name for name in functions}
    found = set(image.exports())
    yield from (f"{name} is missing" for name in sorted(expected - found))
    yield from (f"{name} is exported as well" for name in sorted(found - expected))


def _imported(image):
    """Returns all imports without duplicates, from both the bindings and the symbol table, which must agree."""
    found = {(fixup.target.name, fixup.target.library and fixup.target.library.install_name): fixup.target
             for fixup in image.bindings()}
    for symbol in image.undefined_symbols():
        if symbol.name not in LINKER_SYMBOLS:
            found.setdefault((symbol.name, symbol.library and symbol.library.install_name), symbol)
    return [found[key] for key in sorted(found, key=str)]


def _table(image):
    """Returns (library, first version) for each symbol that may be imported."""
    return {name: (library, version) for library in imports.read()
            for name, version in library.names(image.architecture).items()}


def imported_symbols(image, *_):
    table = _table(image)
    for symbol in _imported(image):
        if symbol.name not in table:
            yield f"{symbol.name} is not in the table of imports"
        elif symbol.library is None:
            yield f"{symbol.name} is bound to no library"
        elif symbol.library.install_name != table[symbol.name][0].install_name:
            yield f"{symbol.name} is bound to {symbol.library.install_name}, not to {table[symbol.name][0].install_name}"


def first_versions(image, *_):
    table = _table(image)
    for symbol in _imported(image):
        _, version = table.get(symbol.name, (None, None))
        if version and version > imports.version_number(MINIMUM):
            yield f"{symbol.name} appeared in {'.'.join(map(str, version))}"


def unknown_versions(image):
    """Returns the imports whose first version is unknown. They are not faults, but they are not known to be correct."""
    table = _table(image)
    return [symbol.name for symbol in _imported(image) if symbol.name in table and table[symbol.name][1] is None]


def libraries(image, *_):
    table = {library.install_name: library for library in imports.read()}
    for library in image.libraries:
        name = library.install_name
        if name not in table:
            yield f"{name} is not in the table of imports"
        elif library.compatible != table[name].compatible:
            yield f"{name} is needed in version {library.compatible}, not {table[name].compatible}"
    if macho.OTHER_DEPENDENCIES & set(image.commands):
        yield "a dependency or search path of another kind than a plain library"


def private_frameworks(image, *_):
    yield from (library.install_name for library in image.libraries if "/PrivateFrameworks/" in library.install_name)


def minimum_version(image, *_):
    if image.minimum_version() != MINIMUM:
        yield f"it is {image.minimum_version()}, not {MINIMUM}"


def text_relocations(image, *_):
    if image.relocation_count():
        yield f"{image.relocation_count()} relocations of the old kind"
    for segment in image.segments:
        yield from (f"section {section.name} has relocations" for section in segment.sections
                    if section.flags & TEXT_RELOCATIONS)
    for fixup in [*image.rebases(), *image.bindings()]:
        if not fixup.segment.protection & macho.PROTECTION_WRITE:
            yield f"the pointer at {fixup.address:#x} in {fixup.segment.name} is changed when the image is loaded"


def segments(image, *_):
    if image.segments[-1].name != "__LINKEDIT":
        yield f"{image.segments[-1].name} is the last segment, not __LINKEDIT"
    end = 0
    for segment in image.segments:
        if segment.address < end:
            yield f"{segment.name} overlaps the one before it"
        end = segment.address + segment.size
        if segment.protection & macho.PROTECTION_WRITE and segment.protection & macho.PROTECTION_EXECUTE:
            yield f"{segment.name} can be written and executed"


@functools.lru_cache
def disassembly(image, executable, section_name):
    """Returns llvm-objdump's output for a code section, with addresses as numbers."""
    command = ["llvm-objdump-14", "--macho", f"--arch={image.architecture}", "--disassemble", "--no-symbolic-operands"]
    command += ["--no-show-raw-insn", f"--section=__TEXT,{section_name}", executable]
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def branches(image, executable, _):
    """Linkers that support i386 sometimes make calls that go to data, or through addresses that are never relocated."""
    code = [section for section in map(image.section, ("__text", "__stubs")) if section]
    listing = "".join(disassembly(image, executable, section.name) for section in code)
    found = 0
    pattern = r"^\s*([0-9a-f]+):?\s+(?:call|j)[a-z]*\s+(\*?)(0x[0-9a-f]+|\d+)\s*(?:##.*)?$"
    for match in re.finditer(pattern, listing, re.MULTILINE):
        found += 1
        target = int(match[3], 0)
        if match[2]:
            yield f"the branch at 0x{match[1]} goes through the fixed address {target:#x}"
        elif not any(section.address <= target < section.address + section.size for section in code):
            yield f"the branch at 0x{match[1]} leaves the code for {target:#x}"
    if not found:
        yield "none found"


def signature(image, *_):
    """Checks the ad-hoc signature. It has no identity, but a digest of each page, which must be correct."""
    place = image.signature()
    if not place:
        yield "there is none"
        return
    blob = image.data[place[0] : place[0] + place[1]]
    magic, _, count = struct.unpack_from(">3I", blob)
    offsets = [struct.unpack_from(">2I", blob, 12 + 8 * number)[1] for number in range(count)]
    directories = [offset for offset in offsets if struct.unpack_from(">I", blob, offset)[0] == CODE_DIRECTORY_MAGIC]
    if magic != SIGNATURE_MAGIC or not directories:
        yield "it has another form"
        return
    directory = blob[directories[0] :]
    flags, digests, _, _, pages, limit = struct.unpack_from(">6I", directory, 12)
    size, kind, _, page_bits = struct.unpack_from("4B", directory, 36)
    if not flags & CODE_DIRECTORY_ADHOC:
        yield "it is no ad-hoc signature"
    if kind != SHA256 or limit != place[0]:
        yield "it does not cover the image with SHA-256"
        return
    for page in range(pages):
        content = image.data[page << page_bits : min(limit, page + 1 << page_bits)]
        if hashlib.sha256(content).digest() != directory[digests + page * size : digests + (page + 1) * size]:
            yield f"page {page} has been changed since"


CHECKS = {
    "it is a bundle": file_type,
    "it exports exactly the functions of the interface": exports,
    "its imports stand in the table, each bound to its library": imported_symbols,
    f"no import is newer than {MINIMUM}": first_versions,
    "its libraries stand in the table": libraries,
    "no framework is a private one": private_frameworks,
    f"its minimum version is {MINIMUM}": minimum_version,
    "its code needs no relocation": text_relocations,
    "its segments are in order": segments,
    "its branches stay in the code": branches,
    "its ad-hoc signature fits": signature,
}
