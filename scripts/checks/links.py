"""Every relative link in a Markdown document leads to a file or folder of the tree, and its anchor to a heading."""
import os
import re
from pathlib import PurePosixPath
from urllib.parse import unquote

FENCE = re.compile(r"^ {0,3}(```|~~~).*?^ {0,3}\1[^\n]*$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"(`+)(?!`).+?(?<!`)\1(?!`)", re.DOTALL)
LINK = re.compile(r"\]\(\s*<?([^)>\s]+)>?(?:\s+\"[^\"]*\")?\s*\)|^ {0,3}\[[^\]]+\]:\s*<?([^>\s]+)", re.MULTILINE)
SCHEME = re.compile(r"[a-zA-Z][\w+.-]*:")
HEADING = re.compile(r"^ {0,3}#{1,6}\s+(.+?)\s*#*$", re.MULTILINE)
LABEL = re.compile(r"\[([^\]]*)\]\([^)]*\)")


def blanked(match):
    """As many line breaks as before, so that line numbers stay."""
    return "\n" * match[0].count("\n")


def anchors(text):
    """The anchors of the headings, as the usual pages make them: lower case, "-" for spaces, numbered if repeated."""
    found = set()
    for heading in HEADING.findall(FENCE.sub(blanked, text)):
        plain = re.sub(r"[^\w\- ]", "", LABEL.sub(r"\1", heading).lower()).replace(" ", "-")
        number = 0
        while (anchor := f"{plain}-{number}" if number else plain) in found:
            number += 1
        found.add(anchor)
    return found


def problems(tree):
    places = set(tree.files) | {folder for path in tree.files for folder in path.parents}
    for document in tree.documents():
        text = CODE.sub(blanked, FENCE.sub(blanked, tree.read(document)))
        for match in LINK.finditer(text):
            link = match[1] or match[2]
            if not SCHEME.match(link) and (fault := fault_of(link, document, places, tree)):
                line = text.count("\n", 0, match.start()) + 1
                yield f"{document}:{line}: the link {link} {fault}"


def fault_of(link, document, places, tree):
    name, _, anchor = unquote(link).partition("#")
    if name.startswith("/"):
        return "is not relative"
    target = PurePosixPath(os.path.normpath(document.parent / name)) if name else document
    if target not in places:
        return "leads to nothing"
    if anchor and (target.suffix != ".md" or anchor not in anchors(tree.read(target))):
        return f"names a heading that {target} does not have"
    return None
