"""The 13 functions of the library, loaded with ctypes. Private to the package."""
import ctypes
import os
from ctypes import POINTER, c_char_p, c_int32, c_uint8, c_uint16, c_uint32, c_void_p

NAME = "libdovrel.so.1"
BUNDLE = "Library/Application Support/Tessilor/pos/Dovrel.bundle"
EXECUTABLE = "Contents/MacOS/Dovrel"
OK = 0

_handle = POINTER(c_void_p)
_result = [POINTER(c_void_p), POINTER(c_uint32)]
_call = [_handle, c_char_p, c_char_p, c_uint32, *_result]
PROTOTYPES = {
    "InitializePOS": [],
    "TerminatePOS": [],
    "posRegisterApplicationWithClasses": [c_char_p, _handle, c_uint32, POINTER(c_uint16), c_uint32, POINTER(c_uint32)],
    "posUnregisterApplication": [c_uint32],
    "posInstantiateObject": [c_uint32, _handle, POINTER(c_void_p)],
    "posInstantiateObjectOnExecuter": [c_uint32, _handle, _handle, POINTER(c_void_p)],
    "posCallMethod": [c_uint32, *_call],
    "posCallMethodOnExecuter": [c_uint32, _handle, *_call],
    "posDeleteObject": [c_uint32, _handle],
    "posGetInfo": [c_uint32, c_char_p, c_uint32, POINTER(c_void_p), POINTER(c_int32)],
    "posExecuteCMD": [c_uint32, _handle, c_uint32, _handle, c_uint32, *_result],
    "posDeleteDLLHeapData": [c_void_p],
    "posFreeDllHeapData": [c_void_p],
}


def load(bundle: "str | os.PathLike[str] | None") -> ctypes.CDLL:
    """Loads the library and declares its functions. Raises OSError if it cannot be loaded, and AttributeError if it
    lacks a function."""
    library = _open(bundle)
    for name, arguments in PROTOTYPES.items():
        function = getattr(library, name)
        function.argtypes = arguments
        function.restype = c_uint32
    return library


def _open(bundle: "str | os.PathLike[str] | None") -> ctypes.CDLL:
    # A process has one session, so a library that is loaded already is the one to use.
    try:
        return ctypes.CDLL(NAME, mode=os.RTLD_NOLOAD | os.RTLD_NOW)
    except OSError:
        pass
    if bundle is not None:
        return ctypes.CDLL(os.path.join(bundle, EXECUTABLE))
    root = os.environ.get("POS_SYSTEM_ROOT", "")
    if root.startswith("/"):
        return ctypes.CDLL(os.path.join(root, BUNDLE, EXECUTABLE))
    try:
        return ctypes.CDLL(NAME)
    except OSError:
        return ctypes.CDLL(os.path.join("/", BUNDLE, EXECUTABLE))


def handle(data: "bytes | None") -> "ctypes._Pointer[c_void_p]":
    """Returns the address of a pointer to the bytes. It keeps the bytes alive."""
    pointer = c_void_p(ctypes.cast(data, c_void_p).value)
    address = ctypes.pointer(pointer)
    address.data = data  # type: ignore[attr-defined]
    return address
