"""The table of imports (imports.txt), for the tools that read it."""
from dataclasses import dataclass, field
from pathlib import Path

TABLE = Path(__file__).with_name("imports.txt")
ARCHITECTURES = ("x86_64", "i386")


def version_number(text):
    """Converts a version such as "10.7" to a tuple that can be compared. Returns None for "?", an unknown version."""
    return None if text == "?" else tuple(int(part) for part in text.split("."))


@dataclass
class Library:
    """One library of the table. `symbols` and `classes` contain first versions by name, for each architecture."""

    file: str
    install_name: str
    current: str
    compatible: str
    symbols: dict = field(default_factory=lambda: {name: {} for name in ARCHITECTURES})
    classes: dict = field(default_factory=lambda: {name: {} for name in ARCHITECTURES})

    def names(self, architecture):
        """Returns the first versions by the names in object code, including those of classes."""
        names = dict(self.symbols[architecture])
        for name, version in self.classes[architecture].items():
            prefixes = ("_OBJC_CLASS_$_", "_OBJC_METACLASS_$_") if architecture == "x86_64" else (".objc_class_name_",)
            names.update({prefix + name: version for prefix in prefixes})
        return names


def read(path=TABLE):
    """Returns the libraries of the table in its order. Raises ValueError, with the line number, for an invalid line."""
    libraries = []
    for number, line in enumerate(Path(path).read_text().splitlines(), 1):
        words = line.split("#")[0].split()
        if not words:
            continue
        try:
            if words[0].startswith("["):
                libraries.append(Library(words[0].strip("[]"), *words[1:]))
                continue
            kind = libraries[-1].symbols
            if words[0] == "class":
                kind = libraries[-1].classes
                words = words[1:]
            name, version, *only = words
            for architecture in only or ARCHITECTURES:
                if name in kind[architecture]:
                    raise ValueError("listed twice")
                kind[architecture][name] = version_number(version)
        except (IndexError, KeyError, TypeError, ValueError) as error:
            raise ValueError(f"{path}:{number}: {error}: {line.strip()}") from error
    return libraries
