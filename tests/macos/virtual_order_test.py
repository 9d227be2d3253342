"""Compares the promised order of virtual functions with the object code for both systems and both widths."""
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from bundle_copy import BUILD, MINIMUM, SOURCES, run
from object_code import ElfObject, MachOObject, output

# The virtual functions after the two destructors. "= 0" marks a pure virtual function.
WRITING = ["setByte", "writeBytes", "copyFrom"]
SERVER_INTERFACE = ["registerApplication", "unregisterApplication", "instantiateObject", "callMethod", "deleteObject",
                    "executeCommand", "getInformation"]
ORDER = {
    # the classes of client
    "CPPException": ["getTypeCode"],
    "POSException": ["getTypeCode"],
    "POSClassNotFoundException": ["getTypeCode"],
    "POSObjectNotFoundException": ["getTypeCode"],
    "POSObjectInstantiationException": ["getTypeCode"],
    "POSMethodNotFoundException": ["getTypeCode"],
    "POSMethodExecutionException": ["getTypeCode"],
    "POSParameterFormatException": ["getTypeCode"],
    "POSRegistrationException": ["getTypeCode"],
    "POSClassPackageNotProcessedException": ["getTypeCode"],
    "POSApplicationNotRegisteredException": ["getTypeCode"],
    "POSLibraryNotFoundException": ["getTypeCode"],
    "POSClassPackageNotFoundException": ["getTypeCode"],
    "POSExecuterReturnedErrorCodeException": ["getTypeCode"],
    "POSCommandNotExecutedException": ["getTypeCode"],
    "POSClientException": [],
    "POSAccessUserInteraction": [],
    "ProtectedObjectServerInterface": SERVER_INTERFACE,
    # the classes of transport
    "POSTransferObjForwarder": ["ForwardTransferObj = 0", "ConnectToPOS = 0", "CheckConnection = 0",
                                "GetClientProcessID = 0"],
    "MacOSXTransferObjForwarder": ["ForwardTransferObj", "ConnectToPOS", "CheckConnection", "GetClientProcessID"],
    "POSTransferObjTrader": [],
    "IPC_Info": [],
    "IPC_via_AE": [],
    "Client_to_POS_Communicator": [],
    "POS_to_Client_Communicator": [],
    "ApplicationLauncher": [],
    # the classes of serialization
    "CPPByteArray": WRITING,
    "CPPExpandingByteArray": WRITING,
    "CPPKey": WRITING,
    "CPPClassID": WRITING,
    "CPPObjectID": WRITING,
    "ProtectedExecuterID": WRITING,
    "StructuredDataWriter": ["writeArrayPart = 0", "writeBytesPart = 0", "writeStreamPart = 0", "writeWholeStreamPart",
                             "writeUInt32Part"],
    "StructuredByteArrayWriter": ["writeArrayPart", "writeBytesPart", "writeStreamPart", "writeWholeStreamPart",
                                  "writeUInt32Part"],
    "StructuredDataReader": ["getTypeNumber = 0", "getPart = 0", "readPart = 0", "getPartLength = 0", "readUInt32Part"],
    "StructuredByteArrayReader": ["getTypeNumber", "getPart", "readPart", "getPartLength", "readUInt32Part"],
    "StructuredCharArrayReader": ["getTypeNumber", "getPart", "readPart", "getPartLength", "readUInt32Part"],
    # the classes of settings
    "Properties": [],
    # the classes of platform
    "SynchronizationObject": ["wait = 0"],
    "CriticalSection": ["wait = 0", "enter = 0", "leave = 0"],
    "MacOSXCriticalSection": ["wait", "enter", "leave"],
    "Mutex": ["wait = 0", "lock = 0", "unlock = 0"],
    "MacOSXMutex": ["wait", "lock", "unlock"],
    "SynchronizationEvent": ["wait = 0", "signal = 0", "reset = 0"],
    "MacOSXSynchronizationEvent": ["wait", "signal", "reset"],
    "SystemException": ["getTypeCode", "getErrorCode", "setErrorCode"],
    "BaseRandom": ["seed = 0", "nextBit = 0", "next32 = 0"],
    "MD5Random": ["seed", "nextBit", "next32"],
    "StdLibRandom": ["seed", "nextBit", "next32"],
    "NumberGenerator": [],
    "LogEntry": [],
    "GeneralEvent": ["eventKind"],
    "SystemEventUnregApp": ["eventKind"],
}


def table_name(class_name):
    return f"_ZTVN6dovrel{len(class_name)}{class_name}E"


def stands_for(names, expected, is_abstract=False):
    """Returns true if a function with these names is the expected one. A destructor has one name for complete objects and
    one for base-class parts; compilers exchange them if both do the same. Some compilers leave the destructor slots of an
    abstract class empty, because nobody can call them."""
    if expected.endswith(" = 0"):
        return names == ["__cxa_pure_virtual"]
    if expected.startswith("~"):
        return is_abstract and not names or any(re.search(r"D[12]Ev$" if expected == "~" else r"D0Ev$", name) for name in names)
    return any(f"{len(expected)}{expected}E" in name for name in names)


class VirtualOrder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def makers(self, architecture):
        """Compiles the classes without a source of their own for macOS."""
        objects = self.folder / "virtual_tables.o"
        run("clang++-14", "-target", f"{architecture}-apple-macosx{MINIMUM}", f"@{BUILD}/cmake/macos/options.rsp", "-O0",
            "-c", SOURCES / "tests/macos/virtual_tables.cpp", "-o", objects)
        return [objects]

    def assert_order(self, files, prefix, reader):
        """Expects every class to have its table in one of the files, with the functions in the promised order."""
        homes = {}
        for line in output("llvm-nm-14", "--print-file-name", "--defined-only", *files).splitlines():
            path, _, entry = line.rpartition(": ")
            homes.setdefault(entry.split()[-1], path)
        opened = {}
        for class_name, operations in ORDER.items():
            with self.subTest(class_name):
                path = homes[prefix + table_name(class_name)]
                opened[path] = opened.get(path) or reader(path)
                found = opened[path].virtual_table(table_name(class_name))
                expected = ["~", "~ and delete", *operations]
                self.assertEqual(len(found), len(expected), found)
                is_abstract = any(operation.endswith(" = 0") for operation in operations)
                for names, operation in zip(found, expected):
                    self.assertTrue(stands_for(names, operation, is_abstract), f"{names} is not {operation}")

    def test_Linux_AsPromised(self):
        files = (BUILD / "tests/macos/host-objects.txt").read_text().split()
        self.assert_order(files, "", ElfObject)

    def test_MacOS64_AsPromised(self):
        files = (BUILD / "cmake/macos/x86_64/objects.txt").read_text().split()
        self.assert_order(files + self.makers("x86_64"), "_", MachOObject)

    def test_MacOS32_AsPromised(self):
        files = (BUILD / "cmake/macos/i386/modules.txt").read_text().split()
        self.assert_order(files + self.makers("i386"), "_", self.compiled_module)

    def compiled_module(self, path):
        """Compiles a module to object code first, because the link step would do that."""
        if Path(path).suffix == ".bc":
            target = self.folder / (Path(path).name + ".o")
            run("clang-14", "-target", f"i386-apple-macosx{MINIMUM}", "-c", path, "-o", target)
            path = target
        return MachOObject(path)


class Reading(unittest.TestCase):
    """Checks that a changed order would be found."""

    def test_ExchangedOperations_AreTold(self):
        with tempfile.TemporaryDirectory() as folder:
            for order in ("first second", "second first"):
                code = """namespace dovrel {
                          struct Pair { virtual ~Pair(); virtual void FIRST(); virtual void SECOND(); };
                          Pair::~Pair() {} void Pair::FIRST() {} void Pair::SECOND() {} }"""
                first, second = order.split()
                code = code.replace("FIRST", first).replace("SECOND", second)
                objects = Path(folder, "pair.o")
                subprocess.run(["clang++-14", "-target", f"i386-apple-macosx{MINIMUM}", "-c", "-x", "c++", "-", "-o", objects],
                               input=code, text=True, check=True)
                found = MachOObject(objects).virtual_table(table_name("Pair"))
                self.assertTrue(stands_for(found[2], first) and stands_for(found[3], second))
                self.assertFalse(stands_for(found[2], second) or stands_for(found[3], first))
