"""The checks of one architecture of the bundle's executable.

Each check takes the image and the names of the functions that it must export. It yields a text for each fault.
"""
import hashlib
import re
import struct

import imports

MINIMUM = "10.7"
LINKER_SYMBOLS = {"dyld_stub_binder"}  # the linker adds this symbol even if it is not bound
# Weak, re-exported, lazy and upward dependencies, and search paths. Our bundle has none of them.
OTHER_DEPENDENCIES = {"LC_LOAD_WEAK_DYLIB", "LC_REEXPORT_DYLIB", "LC_LAZY_LOAD_DYLIB", "LC_LOAD_UPWARD_DYLIB", "LC_RPATH"}

SIGNATURE_MAGIC = 0xFADE0CC0
CODE_DIRECTORY_MAGIC = 0xFADE0C02
CODE_DIRECTORY_ADHOC = 0x2
SHA256 = 2


def file_type(image, _):
    if image.file_type != "BUNDLE":
        yield f"its type is {image.file_type}"
    for flag, meaning in (("TWOLEVEL", "two-level bindings"), ("NOUNDEFS", "no undefined symbols")):
        if flag not in image.flags:
            yield f"it is not marked as having {meaning}"


def exports(image, functions):
    expected = {"_" + name for name in functions}
    found = set(image.exports())
    yield from (f"{name} is missing" for name in sorted(expected - found))
    yield from (f"{name} is not part of the interface" for name in sorted(found - expected))


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


def imported_symbols(image, _):
    table = _table(image)
    for symbol in _imported(image):
        if symbol.name not in table:
            yield f"{symbol.name} is not in the table of imports"
        elif symbol.library is None:
            yield f"{symbol.name} is not bound to a library"
        elif symbol.library.install_name != table[symbol.name][0].install_name:
            yield f"{symbol.name} is bound to {symbol.library.install_name}, not to {table[symbol.name][0].install_name}"


def first_versions(image, _):
    table = _table(image)
    for symbol in _imported(image):
        _, version = table.get(symbol.name, (None, None))
        if version and version > imports.version_number(MINIMUM):
            yield f"{symbol.name} is new in {'.'.join(map(str, version))}"


def unknown_versions(image):
    """Returns the imports whose first version is unknown. They are not faults, but they are not known to be correct."""
    table = _table(image)
    return [symbol.name for symbol in _imported(image) if symbol.name in table and table[symbol.name][1] is None]


def libraries(image, _):
    table = {library.install_name: library for library in imports.read()}
    for library in image.libraries:
        name = library.install_name
        if name not in table:
            yield f"{name} is not in the table of imports"
        elif library.compatible != table[name].compatible:
            yield f"the image needs {name} in version {library.compatible}, not {table[name].compatible}"
    yield from (f"the load command {name} is not allowed" for name in sorted(OTHER_DEPENDENCIES & set(image.commands)))


def private_frameworks(image, _):
    yield from (library.install_name for library in image.libraries if "/PrivateFrameworks/" in library.install_name)


def minimum_version(image, _):
    version = image.command("LC_VERSION_MIN_MACOSX")["version"]
    if version != MINIMUM:
        yield f"it is {version}"


def text_relocations(image, _):
    if image.relocation_count():
        yield f"the image has {image.relocation_count()} relocations of the old kind"
    for segment in image.segments:
        yield from (f"section {section.name} has relocations" for section in segment.sections
                    if {"EXT_RELOC", "LOC_RELOC"} & set(section.attributes))
    for fixup in [*image.rebases(), *image.bindings()]:
        if "w" not in fixup.segment.protection:
            yield f"loading changes the pointer at {fixup.address:#x} in {fixup.segment.name}, which is write-protected"


def segments(image, _):
    if image.segments[-1].name != "__LINKEDIT":
        yield f"{image.segments[-1].name} is the last segment, not __LINKEDIT"
    end = 0
    for segment in image.segments:
        if segment.address < end:
            yield f"{segment.name} overlaps the segment before it"
        end = segment.address + segment.size
        if {"w", "x"} <= set(segment.protection):
            yield f"{segment.name} is both writable and executable"


def branches(image, _):
    """Linkers that support i386 sometimes create calls into data, or calls through addresses that are never relocated."""
    code = [section for section in map(image.section, ("__text", "__stubs")) if section]
    listing = "".join(image.disassembly(section.name) for section in code)
    found = 0
    pattern = r"^\s*([0-9a-f]+):?\s+(?:call|j)[a-z]*\s+(\*?)(0x[0-9a-f]+|\d+)\s*(?:##.*)?$"
    for match in re.finditer(pattern, listing, re.MULTILINE):
        found += 1
        target = int(match[3], 0)
        if match[2]:
            yield f"the branch at 0x{match[1]} uses the pointer at the fixed address {target:#x}"
        elif not any(section.address <= target < section.address + section.size for section in code):
            yield f"the branch at 0x{match[1]} leads to {target:#x}, which is outside the code"
    if not found:
        yield "the listing contains no branch"


def signature(image, _):
    """Checks the ad-hoc signature. It contains no identity, but a digest of each page, which must be correct."""
    place = image.signature()
    if not place:
        yield "the image is not signed"
        return
    blob = image.data[place[0] : place[0] + place[1]]
    magic, _, count = struct.unpack_from(">3I", blob)
    offsets = [struct.unpack_from(">2I", blob, 12 + 8 * number)[1] for number in range(count)]
    directories = [offset for offset in offsets if struct.unpack_from(">I", blob, offset)[0] == CODE_DIRECTORY_MAGIC]
    if magic != SIGNATURE_MAGIC or not directories:
        yield "the signature has no code directory"
        return
    directory = blob[directories[0] :]
    flags, digests, _, _, pages, limit = struct.unpack_from(">6I", directory, 12)
    size, kind, _, page_bits = struct.unpack_from("4B", directory, 36)
    if not flags & CODE_DIRECTORY_ADHOC:
        yield "it is not an ad-hoc signature"
    if kind != SHA256 or limit != place[0]:
        yield "the signature does not cover the whole image with SHA-256"
        return
    for page in range(pages):
        content = image.data[page << page_bits : min(limit, page + 1 << page_bits)]
        if hashlib.sha256(content).digest() != directory[digests + page * size : digests + (page + 1) * size]:
            yield f"page {page} was changed after signing"


CHECKS = {
    "it is a bundle": file_type,
    "it exports exactly the functions of the interface": exports,
    "each import is in the table of imports and bound to the library given there": imported_symbols,
    f"no import is newer than {MINIMUM}": first_versions,
    "each library is in the table of imports": libraries,
    "no framework is private": private_frameworks,
    f"its minimum version is {MINIMUM}": minimum_version,
    "its code needs no relocation": text_relocations,
    "its segments are in order": segments,
    "its branches stay inside the code": branches,
    "its ad-hoc signature is valid": signature,
}
