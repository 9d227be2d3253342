"""The programs that build the bundle for macOS, by the names that they have on Debian."""
CLANG = "clang-14"
# The second is the last linker that reads i386.
LINKERS = {"x86_64": "ld64.lld-14", "i386": "ld64.lld.darwinold-13"}
