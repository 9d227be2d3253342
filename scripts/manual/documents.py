"""Completes the pages of docs/manual with parts of the header and of other documents."""
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# The pages that include most of a document.
PAGES = {"development-server.md": "**merrowd.conf**(5)", "recordings.md": "**dovrel-recording**(5)"}


def read_section(document, heading):
    """Returns the part of a document below a heading, with the headings in it one level higher."""
    text = (ROOT / document).read_text()
    found = re.search(rf"^(#+) {re.escape(heading)}\n(.*?)(?=^#{{1,2}} |\Z)", text, re.MULTILINE | re.DOTALL)
    if not found:
        raise ValueError(f"{document} has no section {heading}")
    return re.sub("(?m)^###", "##", found[2].strip())


def tables_to_lists(text):
    """A cell of a manual page's table does not wrap, so each row becomes an item of a list."""
    def to_list(table):
        rows = [[cell.strip() for cell in re.split(r"(?<!\\)\|", line.strip()[1:-1])] for line in table[0].splitlines()]
        head = rows[0]
        items = []
        for first, *rest in rows[2:]:
            values = [value if at == 1 or not value else f"{head[at]}: {value}" for at, value in enumerate(rest, 1)]
            items.append(f"**{first.replace('`', '')}**\n: " + "; ".join(value for value in values if value))
        return f"{head[0].capitalize()}:\n\n" + "\n\n".join(items) + "\n"
    return re.sub(r"(?:^\|.*\|\n)+", to_list, text, flags=re.MULTILINE)


def replace_link(link):
    """Returns the text of a link to another document, or the manual page if the text is only the document's name."""
    text, target = link.groups()
    document = target.split("#")[0]
    return PAGES.get(document, f"{document} of the sources") if text == document else text


def expand(text, header):
    """Replaces the lines in double braces and the things that a manual page does not have."""
    text = text.replace("{{terms}}", header.terms_list())
    text = re.sub(r"\{\{contract (.+?)\}\}", lambda found: header.paragraph(found[1]), text)
    text = re.sub(r"\{\{include (\S+) # (.+?)\}\}", lambda found: read_section(found[1], found[2]), text)
    text = re.sub(r"\[([^\]]+)\]\(([^)]+)\)", replace_link, text)
    text = re.sub(r"^```\w*\n(.*?)^```$", lambda block: re.sub("(?m)^(?=.)", "    ", block[1]), text,
                  flags=re.MULTILINE | re.DOTALL)
    return tables_to_lists(text + "\n")
