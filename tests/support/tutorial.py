"""Reads docs/tutorial.md, so that tests run its commands word by word."""
import re
from dataclasses import dataclass, field

from installation import SOURCES

PAGE = (SOURCES / "docs/tutorial.md").read_text()


@dataclass
class Block:
    kind: str
    label: str
    content: str
    expected: list = field(default_factory=list)  # lines of the output that the page shows


def read_blocks():
    blocks = []
    for kind, label, content in re.findall(r"^```(\w+) ?(\S*)\n(.*?)^```$", PAGE, re.MULTILINE | re.DOTALL):
        if kind == "text":
            blocks[-1].expected = content.splitlines()
        else:
            blocks.append(Block(kind, label, content))
    return blocks


BLOCKS = read_blocks()
FILES = {block.label: block.content for block in BLOCKS if block.kind != "sh"}
COMMANDS = [block for block in BLOCKS if block.kind == "sh"]


def labelled(label):
    return [block.content for block in COMMANDS if block.label == label]


PACKAGES, = labelled("packages")
FROM_SOURCE, BUILD_AGAIN = labelled("source")
VARIABLES, = labelled("variables")
FOLDER, = labelled("folder")
CODE, = (block for block in COMMANDS if block.label == "code")
STEPS = [block for block in COMMANDS if not block.label]
