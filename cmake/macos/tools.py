"""The programs that build and check the bundle for macOS, with their names on Debian."""
CLANG = "clang-14"
# The second linker is the last one that supports i386.
LINKERS = {"x86_64": "ld64.lld-14", "i386": "ld64.lld.darwinold-13"}


def llvm(name):
    """Returns the name of a tool of LLVM, for example of "nm"."""
    return f"llvm-{name}-14"
