"""Every folder of the top two levels has a README.md of at most 15 lines.

It says what belongs in the folder, what does not, and what the folder may include. Some folders need none, and some pages
are manuals and may be longer; both are listed here.
"""

LONGEST = 15
# Folders whose parent's README describes them, or in which a page would be taken for something else.
WITHOUT = ("benchmarks/start", "bindings/python", "cmake/package", "examples/*", "fuzz/*.corpus", "include/dovrel", "resources/Helpsystem")
MANUALS = ("benchmarks", "benchmarks/calls")


def problems(tree):
    folders = {parent for path in tree.files for parent in path.parents if 0 < len(parent.parts) <= 2}
    for folder in sorted(folders):
        if folder.parts[0].startswith(".") or any(folder.match(pattern) for pattern in WITHOUT):
            continue
        page = folder / "README.md"
        if page not in tree.files:
            yield f"{folder}: there is no README.md"
        elif folder.as_posix() not in MANUALS and (lines := tree.read(page).count("\n")) > LONGEST:
            yield f"{page}: it has {lines} lines, more than {LONGEST}"
