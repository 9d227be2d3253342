"""Finds the Objective-C messages that the code of an image sends, and the classes that it uses.

The linker for i386 can merge different pointers to selectors or classes into one. Therefore the architectures are compared:
both are built from the same sources.
"""
import re

CLASS_SYMBOL = "_OBJC_CLASS_$_"
CONTENT_IN_CLASS, NAME_IN_CONTENT = 32, 24  # offsets in a 64-bit class description
INSTRUCTION = re.compile(r"^\s*([0-9a-f]+):?\s+(\S+)[ \t]*(.*)$", re.MULTILINE)
OPERAND = re.compile(r"(-?(?:0x[0-9a-f]+|\d+))\(%\w+")


def _distances(image):
    """Yields (base, distance) for operands that are relative to an address in the code. In 64-bit code the base is the next
    instruction. In 32-bit code it is the instruction whose address the call before it pushed."""
    here = 0
    instructions = INSTRUCTION.findall(image.disassembly("__text"))
    for (_, operation, operands), (following, next_operation, _) in zip(instructions, instructions[1:]):
        following = int(following, 16)
        if image.pointer_size == 8:
            here = following
        elif operation.startswith("call") and next_operation == "popl":
            here = following
        for distance in OPERAND.findall(operands):
            yield here, int(distance, 0)


def _pointers(image, section_name):
    """Returns the addresses of the pointers in a section that the code uses."""
    section = image.section(section_name)
    if not section:
        return set()
    places = range(section.address, section.address + section.size, image.pointer_size)
    return set(places).intersection(here + distance for here, distance in _distances(image))


def messages(image):
    """Returns the names of the messages that the code sends."""
    return {image.text(image.word(place)) for section in ("__objc_selrefs", "__message_refs")
            for place in _pointers(image, section)}


def classes(image):
    """Returns the names of the classes that the code uses."""
    if image.pointer_size == 4:
        return {image.text(image.word(place)) for place in _pointers(image, "__cls_refs")}
    bound = {fixup.address: fixup.target.name.removeprefix(CLASS_SYMBOL) for fixup in image.bindings()}
    return {bound.get(place) or _own_class(image, image.word(place))
            for place in _pointers(image, "__objc_classrefs")}


def _own_class(image, description):
    """Returns the name of a class that a 64-bit image defines."""
    return image.text(image.word(image.word(description + CONTENT_IN_CLASS) + NAME_IN_CONTENT))


def differences(images, names_of):
    """Yields a text for each architecture whose code lacks names that the code of the others uses."""
    names = {architecture: names_of(image) for architecture, image in sorted(images.items())}
    everything = set().union(*names.values())
    if not everything:
        yield "the code contains none"
    for architecture, found in names.items():
        if everything - found:
            yield f"not in {architecture}: {', '.join(sorted(everything - found))}"
