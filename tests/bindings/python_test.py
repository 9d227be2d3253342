"""The binding for Python, against a real server. Each test runs in an interpreter of its own."""
import contextlib
import io
import os
import re
import subprocess
import sys
import threading
import unittest
from pathlib import Path

from installation import SOURCES, Installation

sys.path.insert(0, str(SOURCES / "bindings/python"))
import dovrel  # noqa: E402
from dovrel import _library  # noqa: E402

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
HEADER = (SOURCES / "include/dovrel/pos.h").read_text()


class Types(unittest.TestCase):
    def test_Module_IsAcceptedByMypy(self):
        result = subprocess.run(["mypy", "--strict", "--python-version", "3.9", "--cache-dir", os.devnull, "dovrel"],
                                cwd=SOURCES / "bindings/python", capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)


class Python(Installation):
    def setUp(self):
        super().setUp()
        self.expect(self.run_as(True, f'cmake --install "{BUILD}" --prefix "{self.root}"', self.folder), 0)
        # The tests themselves are the host, so the server is that of their user.
        self.home.chmod(0o755)
        self.runtime.chmod(0o700)
        os.environ.update(POS_SYSTEM_ROOT=str(self.root), XDG_RUNTIME_DIR=str(self.runtime), HOME=str(self.home),
                          POS_ALERTS="log")

    @contextlib.contextmanager
    def registered(self, classes=("Digest", "Echo", "Counter"), options=()):
        with dovrel.Session() as session, session.register("Python", classes, options) as application:
            yield application

    @staticmethod
    def count(application, request):
        return int.from_bytes(application.information(bytes([request, 0])), "little")

    def applications(self, application):
        return self.count(application, 3)

    def objects(self, application):
        return self.count(application, 4)

    def test_Call_ReturnsTheServersResult(self):
        with self.registered() as application, application.create("Digest") as digest:
            self.assertEqual(digest.call("md5", b"abc"), b"900150983cd24fb0d6963f7d28e17f72")
            self.assertEqual(digest.call("md5"), b"d41d8cd98f00b204e9800998ecf8427e")
            self.assertEqual(len(digest.identifier), 16)

    def test_Parameters_OfEveryKindOfBytes_AreSent(self):
        with self.registered() as application, application.create(b"Echo") as echo:
            for data in (b"a\0b", bytearray(b"x\0"), memoryview(b"yz"), b""):
                self.assertEqual(echo.call("echo", data), bytes(data))
            self.assertEqual(echo.call("echo", b"there", executer="executer"), b"there")
            large = os.urandom(3 << 20)
            self.assertEqual(echo.call("echo", large), large)

    def test_Run_Information_AndInterfaceVersion_ReturnWhatTheServerSays(self):
        with dovrel.Session() as session:
            self.assertEqual(session.interface_version(), 7)
            self.assertEqual(self.servers(), [])
            with session.register("Python") as application:
                self.assertEqual(application.run("ping", b"data"), b"data")
                self.assertEqual(application.run(b"version"), application.information(b"\1\0"))
                self.assertGreater(application.number, 0)

    def test_Failures_AreRaisedWithTheFunction(self):
        with self.registered() as application, application.create("Digest") as digest:
            for function, call in (("posCallMethodOnExecuter", lambda: digest.call("none")),
                                   ("posInstantiateObject", lambda: application.create("None")),
                                   ("posExecuteCMD", lambda: application.run("none")),
                                   ("posGetInfo", lambda: application.information(b""))):
                with self.assertRaisesRegex(dovrel.Failure, f"^{function} failed$"):
                    call()

    def test_Registration_WithoutAServer_IsAFailure(self):
        (self.products / "Merrowd.app").rename(self.products / "Moved.app")
        with dovrel.Session() as session, self.assertRaisesRegex(dovrel.Failure, "posRegisterApplicationWithClasses"):
            session.register("Python")

    def test_Options_ReachTheLibrary(self):
        (self.products / "Merrowd.conf").write_text(
            "//misbehave\nSTR:error\n//misbehaveCommand\nSTR:register application\n//errorCode\nINT:32\n")
        program = ("import dovrel, sys\nwith dovrel.Session() as session:\n"
                   " try: session.register('Python', options=[dovrel.Option(int(code)) for code in sys.argv[1:]])\n"
                   " except dovrel.Failure: pass\n")

        def shown(*options):
            return subprocess.run([sys.executable, "-c", program, *map(str, options)], capture_output=True, text=True,
                                  env={**os.environ, "PYTHONPATH": str(SOURCES / "bindings/python")}, check=True).stderr

        self.assertIn("No Error dialogue shown", shown(1121))
        self.assertEqual(shown(1121, 1120), "")

    def test_OptionsThatDoNotFitInto16Bits_AreValueErrors(self):
        with dovrel.Session() as session:
            for code in (-1, 65536, 65536 + 1121):
                with self.assertRaisesRegex(ValueError, f"^an option is a number from 0 to 65535: {code}$"):
                    session.register("Python", options=[code])
        self.assertEqual(self.servers(), [])

    def test_SizeOf2GiB_IsNotTakenForANegativeNumber(self):
        # The program has no memory for the copy, so that the test needs none. A negative size would be another failure.
        program = """import ctypes, mmap, resource, dovrel
class Library:
    def function(self, block, size):
        block._obj.value = ctypes.addressof(ctypes.c_char.from_buffer(memory))
        size._obj.value = 2**31
        return 0
    def posDeleteDLLHeapData(self, block):
        print("freed")
memory = mmap.mmap(-1, 2**31)
session = dovrel.Session.__new__(dovrel.Session)
session._library, session._is_open = Library(), True
resource.setrlimit(resource.RLIMIT_AS, (3 * 2**30, 3 * 2**30))
try:
    session._fetch("function", size=ctypes.c_uint32())
except MemoryError:
    print("no memory")
"""
        result = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=False,
                                env={**os.environ, "PYTHONPATH": str(SOURCES / "bindings/python")})
        self.assertEqual((result.stdout, result.stderr), ("freed\nno memory\n", ""))

    def test_Objects_LeaveTheServerAtTheEndOfTheirStatement(self):
        with self.registered() as application:
            with application.create("Echo"):
                self.assertEqual(self.objects(application), 1)
            self.assertEqual(self.objects(application), 0)
            with application.create("Echo") as echo:
                echo.delete()
            with self.assertRaises(dovrel.Failure):
                echo.call("echo")
            with application.create("Echo") as echo:
                echo.forget()
            self.assertEqual(self.objects(application), 1)

    def test_Applications_LeaveTheServerAtTheEndOfTheirStatement(self):
        with dovrel.Session() as session, session.register("observer") as observer:
            with session.register("other"):
                self.assertEqual(self.applications(observer), 2)
            self.assertEqual(self.applications(observer), 1)
            with session.register("other") as other:
                other.unregister()
            with session.register("other") as other:
                other.forget()
            self.assertEqual(self.applications(observer), 2)

    def test_ExceptionInsideAStatement_IsNotHiddenByAFailureAtItsEnd(self):
        with dovrel.Session() as session, self.assertRaises(KeyError):
            with session.register("Python", ["Echo"]) as application, application.create("Echo"):
                session._library.posUnregisterApplication(application.number)
                raise KeyError

    def test_FailureAtTheEndOfAStatement_IsRaised(self):
        with dovrel.Session() as session, self.assertRaisesRegex(dovrel.Failure, "posUnregisterApplication"):
            with session.register("Python") as application:
                session._library.posUnregisterApplication(application.number)

    def test_UseOfAClosedSession_IsAValueErrorAndNoCrash(self):
        session = dovrel.Session()
        application = session.register("Python", ["Echo"])
        echo = application.create("Echo")
        session.close()
        session.close()
        for call in (session.interface_version, lambda: session.register("x"), lambda: application.run("ping"),
                     application.unregister, lambda: application.create("Echo"), lambda: echo.call("echo"), echo.delete):
            with self.assertRaises(ValueError):
                call()

    def test_SessionInAForkedProcess_IsAFailure(self):
        with dovrel.Session():
            child = os.fork()
            if child == 0:
                with contextlib.redirect_stderr(io.StringIO()):
                    try:
                        dovrel.Session()
                    except dovrel.Failure:
                        os._exit(0)
                os._exit(1)
            self.assertEqual(os.waitpid(child, 0)[1], 0)

    def test_NamesThatCannotBeSent_AreValueErrors(self):
        with self.registered() as application, application.create("Echo") as echo:
            for call in (lambda: echo.call("a\0b"), lambda: application.create("12345678901234567")):
                with self.assertRaises(ValueError):
                    call()
        self.assertEqual(dovrel.identifier("é"), "é".encode() + bytes(14))

    def test_Threads_CallAtTheSameTime(self):
        with self.registered() as application, application.create("Counter") as counter:
            def add():
                for _ in range(25):
                    counter.call("add", (1).to_bytes(4, "little"))
            threads = [threading.Thread(target=add) for _ in range(4)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            self.assertEqual(int.from_bytes(counter.call("value"), "little"), 100)

    def test_BundleByItsPath_IsLoaded(self):
        os.environ["POS_SYSTEM_ROOT"] = str(self.folder)
        with dovrel.Session(self.products / "Dovrel.bundle") as session:
            self.assertEqual(session.interface_version(), 7)
        with open("/proc/self/maps", encoding="utf-8") as maps:
            self.assertIn(f"{self.products}/Dovrel.bundle/", maps.read())

    def test_MissingLibrary_IsAnOSErrorThatNamesIt(self):
        os.environ["POS_SYSTEM_ROOT"] = str(self.folder)
        with self.assertRaisesRegex(OSError, f"{self.folder}/Library.*/Dovrel.bundle/Contents/MacOS/Dovrel"):
            dovrel.Session()

    def test_Prototypes_AreThoseOfTheHeader(self):
        text = re.sub(r"/\*.*?\*/", "", HEADER, flags=re.DOTALL)
        declared = re.findall(r"^POS_EXPORT uint32_t (\w+)\((.*?)\);", text, re.MULTILINE | re.DOTALL)
        self.assertEqual(len(declared), 13)
        counts = {name: 0 if arguments == "void" else arguments.count(",") + 1 for name, arguments in declared}
        self.assertEqual({name: len(arguments) for name, arguments in _library.PROTOTYPES.items()}, counts)

    def test_Options_AreThoseOfTheHeader(self):
        declared = dict(re.findall(r"^#define POS_(OPTION_1104|OPTION_SILENT_\w+) (\d+)u$", HEADER, re.MULTILINE))
        self.assertEqual({name.replace("OPTION_SILENT", "SILENT"): int(code) for name, code in declared.items()},
                         {option.name: option.value for option in dovrel.Option})

    def test_EveryPublicName_HasADocstring(self):
        for name in dovrel.__all__:
            member = getattr(dovrel, name)
            self.assertTrue(member.__doc__, name)
            for attribute, value in vars(member).items() if isinstance(member, type) else ():
                if callable(value) and not attribute.startswith("_"):
                    self.assertTrue(value.__doc__, f"{name}.{attribute}")
