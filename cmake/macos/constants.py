"""The numbers of the file format. Their only definition is a header of the loader."""
import enum
import re
from pathlib import Path

HEADER = Path(__file__).parents[2] / "macho/format/FormatConstants.h"


def enumeration(name):
    """Returns the header's enumeration of this name."""
    body = re.search(rf"^enum (?:class )?{name} : \w+ \{{(.*?)\}};", HEADER.read_text(), re.MULTILINE | re.DOTALL)[1]
    return enum.IntEnum(name, {key: int(value, 0) for key, value in re.findall(r"(\w+) = (\w+)", body)})
