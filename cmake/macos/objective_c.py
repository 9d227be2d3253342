"""What the code of an image says to Objective-C: the messages that it sends and the classes that it uses.

The linker that handles i386 makes one of pointers that the code has for them, when it is let. So each architecture is held
against the other: both come from the same sources.
"""
import re

import macho
from image_checks import disassembly

CLASS_SYMBOL = "_OBJC_CLASS_$_"
CONTENT_IN_CLASS, NAME_IN_CONTENT = 32, 24  # of the description of a class in 64 bits
INSTRUCTION = re.compile(r"^\s*([0-9a-f]+):?\s+(\S+)[ \t]*(.*)$", re.MULTILINE)
OPERAND = re.compile(r"(-?(?:0x[0-9a-f]+|\d+))\(%\w+")


def _distances(image, executable):
    """(place, distance from it) for the operands of the code that count from a place in the code: in 64 bits from the next
    instruction, in 32 bits from the one that a call in front of it pushed the address of."""
    here = 0
    instructions = INSTRUCTION.findall(disassembly(image, executable, "__text"))
    for (_, operation, operands), (following, next_operation, _) in zip(instructions, instructions[1:]):
        following = int(following, 16)
        if image.pointer_size == 8:
            here = following
        elif operation.startswith("call") and next_operation == "popl":
            here = following
        for distance in OPERAND.findall(operands):
            yield here, int(distance, 0)


def _pointers(image, executable, section_name):
    """The addresses of those pointers of a section that the code refers to."""
    section = image.section(section_name)
    if not section:
        return set()
    places = range(section.address, section.address + section.size, image.pointer_size)
    return set(places).intersection(here + distance for here, distance in _distances(image, executable))


def messages(image, executable):
    """The names of the messages that the code sends."""
    return {image.text(image.word(place)) for section in ("__objc_selrefs", "__message_refs")
            for place in _pointers(image, executable, section)}


def classes(image, executable):
    """The names of the classes that the code uses."""
    if image.pointer_size == 4:
        return {image.text(image.word(place)) for place in _pointers(image, executable, "__cls_refs")}
    bound = {fixup.address: fixup.target.name.removeprefix(CLASS_SYMBOL) for fixup in image.bindings()}
    return {bound.get(place) or _own_class(image, image.word(place))
            for place in _pointers(image, executable, "__objc_classrefs")}


def _own_class(image, description):
    """The name of a class that a 64-bit image describes itself."""
    return image.text(image.word(image.word(description + CONTENT_IN_CLASS) + NAME_IN_CONTENT))


def differences(images, executable, names_of):
    """What the code of one architecture has among these names and that of another has not, in words."""
    try:
        names = {architecture: names_of(image, executable) for architecture, image in sorted(images.items())}
    except macho.MachOError as error:
        yield str(error)
        return
    everything = set().union(*names.values())
    if not everything:
        yield "none found"
    for architecture, found in names.items():
        if everything - found:
            yield f"not in {architecture}: {', '.join(sorted(everything - found))}"
