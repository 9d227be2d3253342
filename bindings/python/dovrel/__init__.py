"""Dovrel for Python: use objects in a protected object server.

    import dovrel

    with dovrel.Session() as session:
        with session.register("My program", ["Digest"]) as application:
            with application.create("Digest") as digest:
                print(digest.call("md5", b"the data").decode())

A call that fails raises Failure; the library has shown the reason to the user by then. Parameters and results are
bytes. Names of applications are sent as UTF-8. A class is given by its 16 bytes, or by a name, which is padded with
zero bytes.

The calls are those of the C library (dovrel/pos.h), whose documentation holds here as well. A call blocks until the
server has replied, and while an alert is open; other Python threads run meanwhile. Any thread may make calls, and they
run one after another. If memory runs out while a session is opened, the library ends the process.
"""
import ctypes
import enum
import os
from types import TracebackType
from typing import Callable, Iterable, Optional, Type, Union

from . import _library

__all__ = ["Application", "Failure", "Object", "Option", "Session", "identifier"]

IDENTIFIER_SIZE = 16
_LONGEST = 2**32 - 1
_LARGEST_OPTION = 2**16 - 1

Data = Union[bytes, bytearray, memoryview]
Identifier = Union[str, bytes]


class Failure(Exception):
    """A call has failed. The text names the function; the user has seen the reason."""


class Option(enum.IntEnum):
    """Options of a registration."""

    #: Sent to the server. It has no effect in the library.
    OPTION_1104 = 1104
    #: If the server refuses the registration, no alert is shown.
    SILENT_REGISTRATION = 1120
    #: The server's messages for this application are not shown. Failures still are.
    SILENT_MESSAGES = 1121


def identifier(name: Identifier) -> bytes:
    """Returns the 16 bytes of an identifier: the bytes of a name (UTF-8), padded with zero bytes.

    Raises ValueError if they are more than 16."""
    data = name.encode() if isinstance(name, str) else bytes(name)
    if len(data) > IDENTIFIER_SIZE:
        raise ValueError(f"an identifier has at most {IDENTIFIER_SIZE} bytes: {name!r}")
    return data.ljust(IDENTIFIER_SIZE, b"\0")


def _text(name: str) -> bytes:
    data = name.encode()
    if b"\0" in data:
        raise ValueError(f"a name cannot contain a NUL character: {name!r}")
    return data


def _bytes(data: Data) -> bytes:
    result = bytes(data)
    if len(result) > _LONGEST:
        raise ValueError("the data are larger than 4 GiB")
    return result


class Session:
    """The session of this process. Use it in a with statement, or call close.

    There must not be two sessions at the same time, because the first one that is closed closes the session of both."""

    def __init__(self, bundle: "Optional[Union[str, os.PathLike[str]]]" = None) -> None:
        """Loads the library and opens the session. Sends nothing to the server.

        The library is the one that this process has loaded already, else that of the bundle, else that of the
        environment variable POS_SYSTEM_ROOT, else the one that the system's loader finds.

        Raises OSError if the library cannot be loaded, and Failure in a process that was forked from one with an open
        session."""
        self._library = _library.load(bundle)
        self._is_open = False
        self._require("InitializePOS")
        self._is_open = True

    def __enter__(self) -> "Session":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], value: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Closes the session and unregisters the applications that are still registered. The session, its applications
        and its objects cannot be used any more. A second call does nothing."""
        if self._is_open:
            self._is_open = False
            self._library.TerminatePOS()

    def register(self, name: str, classes: Iterable[Identifier] = (), options: Iterable[int] = ()) -> "Application":
        """Registers an application and its classes with the server, which is launched if necessary. Raises Failure,
        and ValueError for an option that is not a number from 0 to 65535."""
        identifiers = [identifier(class_) for class_ in classes]
        codes = list(options)
        for code in codes:
            # ctypes would send the lower 16 bits.
            if not 0 <= code <= _LARGEST_OPTION:
                raise ValueError(f"an option is a number from 0 to {_LARGEST_OPTION}: {code}")
        pointers = (ctypes.c_void_p * len(identifiers))(*[_library.address(data) for data in identifiers])
        number = ctypes.c_uint32()
        self._require("posRegisterApplicationWithClasses", _text(name), pointers, len(identifiers),
                      (ctypes.c_uint16 * len(codes))(*codes), 2 * len(codes), ctypes.byref(number))
        return Application(self, number.value)

    def interface_version(self) -> int:
        """Returns the version of the interface between library and server. Needs no server. Raises Failure."""
        return int.from_bytes(self._information(0, b"\x60\x01"), "little")

    def _require(self, function: str, *arguments: object) -> None:
        # Without a session the library would crash.
        if not self._is_open and function != "InitializePOS":
            raise ValueError("the session is closed")
        if getattr(self._library, function)(*arguments) != _library.OK:
            raise Failure(f"{function} failed")

    def _fetch(self, function: str, *arguments: object, size: "Union[ctypes.c_uint32, ctypes.c_int32]") -> bytes:
        """Makes a call whose last arguments receive a block of the library and its size."""
        block = ctypes.c_void_p()
        self._require(function, *arguments, ctypes.byref(block), ctypes.byref(size))
        try:
            # ctypes.string_at takes only sizes below 2 GiB.
            return (ctypes.c_char * size.value).from_address(block.value).raw if block.value else b""
        finally:
            self._library.posDeleteDLLHeapData(block)

    def _information(self, application: int, request: Data) -> bytes:
        data = _bytes(request)
        return self._fetch("posGetInfo", application, data, len(data), size=ctypes.c_int32())


class Application:
    """An application that is registered with the server. Made by Session.register.

    Use it in a with statement, or call unregister; closing the session unregisters it as well."""

    def __init__(self, session: Session, number: int) -> None:
        self._session = session
        #: The number that the server has given to the application.
        self.number = number
        self._is_registered = True

    def __enter__(self) -> "Application":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], value: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        if self._is_registered:
            _leave(self.unregister, value)

    def create(self, class_: Identifier) -> "Object":
        """Creates an object of a class. Raises Failure."""
        block = ctypes.c_void_p()
        self._session._require("posInstantiateObject", self.number, _library.handle(identifier(class_)),
                               ctypes.byref(block))
        try:
            return Object(self._session, self.number, ctypes.string_at(block, IDENTIFIER_SIZE))
        finally:
            self._session._library.posFreeDllHeapData(block)

    def run(self, command: Union[str, Data], argument: Data = b"") -> bytes:
        """Runs a command in the server and returns its result. Raises Failure."""
        command = _bytes(command.encode() if isinstance(command, str) else command)
        argument = _bytes(argument)
        return self._session._fetch("posExecuteCMD", self.number, _library.handle(command), len(command),
                                    _library.handle(argument), len(argument), size=ctypes.c_uint32())

    def information(self, request: Data) -> bytes:
        """Fetches a block of information from the server. Raises Failure."""
        return self._session._information(self.number, request)

    def unregister(self) -> None:
        """Unregisters the application; its objects cannot be used any more. Raises Failure, and then the application
        stays registered."""
        self._session._require("posUnregisterApplication", self.number)
        self._is_registered = False

    def forget(self) -> None:
        """Gives up the application without a call, for example because its server has ended."""
        self._is_registered = False


class Object:
    """An object in the server. Made by Application.create.

    Use it in a with statement, or call delete."""

    def __init__(self, session: Session, application: int, identifier_: bytes) -> None:
        self._session = session
        self._application = application
        #: The 16 bytes that identify the object in the server.
        self.identifier = identifier_
        self._is_there = True

    def __enter__(self) -> "Object":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], value: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        if self._is_there:
            _leave(self.delete, value)

    def call(self, method: str, parameters: Data = b"", executer: Optional[Identifier] = None) -> bytes:
        """Calls a method, on an executer if one is given, and returns its result. Raises Failure."""
        data = _bytes(parameters)
        place = _library.handle(None if executer is None else identifier(executer))
        return self._session._fetch("posCallMethodOnExecuter", self._application, place,
                                    _library.handle(self.identifier), _text(method), data, len(data),
                                    size=ctypes.c_uint32())

    def delete(self) -> None:
        """Deletes the object in the server. Raises Failure; the object is given up all the same."""
        self._is_there = False
        self._session._require("posDeleteObject", self._application, _library.handle(self.identifier))

    def forget(self) -> None:
        """Gives up the object without a call, for example because its server has ended."""
        self._is_there = False


def _leave(operation: Callable[[], None], error: Optional[BaseException]) -> None:
    """Runs the operation at the end of a with statement. An exception that is under way is more important."""
    try:
        operation()
    except (Failure, ValueError):
        if error is None:
            raise
