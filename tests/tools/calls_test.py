"""dovrel call, command and info, with a real server"""
import hashlib
import os

from installed_tool import InstalledTool

MD5_OF_ABC = "900150983cd24fb0d6963f7d28e17f72"


class Call(InstalledTool):
    def test_ParametersFromEverySource_AreSentUnchanged(self):
        data = bytes(range(256)) * 300
        file = self.folder / "data"
        file.write_bytes(data)
        digest = hashlib.md5(data).hexdigest()
        self.assertEqual(self.output("call Digest md5 abc"), MD5_OF_ABC)
        self.assertEqual(self.output("call Digest md5 '61 62 63' --hex"), MD5_OF_ABC)
        self.assertEqual(self.output(f"call Digest md5 --file '{file}'"), digest)
        self.assertEqual(self.output(f"call Digest md5 --file - <'{file}'"), digest)
        self.assertEqual(self.output("call Digest md5"), hashlib.md5(b"").hexdigest())
        self.assertEqual(self.output("call 44696765737400000000000000000000 md5 abc"), MD5_OF_ABC)
        self.assertEqual(self.output("call Digest md5 abc --executer unit"), MD5_OF_ABC)

    def test_Result_GoesUnchangedToAFileOrAPipe(self):
        data = os.urandom(100000) + b"\r\n\0"
        (self.home / "data").write_bytes(data)
        self.output(f"call Echo echo --file '{self.home}/data' --output '{self.home}/copy'")
        self.assertEqual((self.home / "copy").read_bytes(), data)
        self.output(f"call Echo echo --file '{self.home}/data' | cmp - '{self.home}/data'")

    def test_Result_IsShownAsADumpOrAsJson(self):
        dump = "00000000  61 00 7F 41 42 43 44 45  46 47 48 49 4A 4B 4C 4D  |a..ABCDEFGHIJKLM|\n".replace("45  46", "45 46")
        dump += "00000010  4E" + " " * 45 + "  |N|\n"
        self.assertEqual(self.output("call Echo echo 61007F4142434445464748494A4B4C4D4E --hex --format hex"), dump)
        self.assertEqual(self.json("call Echo echo 6100 --hex --json"), {"size": 2, "hexadecimal": "6100"})
        self.assertEqual(self.json("call Echo echo hé --json"), {"size": 3, "hexadecimal": "68C3A9", "text": "hé"})

    def test_OnATerminal_TextIsShownAsTextAndBinaryDataAsADump(self):
        self.assertEqual(self.on_terminal("call Echo echo hello"), "hello\n")
        self.assertEqual(self.on_terminal("call Echo echo 001B --hex"),
                         "00000000  00 1B" + " " * 42 + "  |..|\n")
        shown = self.on_terminal(f"call Echo echo {'x' * 5000}")
        self.assertEqual(shown, "x" * 4096 + "\n… 904 more bytes; --output FILE writes all of them\n")

    def test_LongCallOnATerminal_ShowsProgressAndRemovesIt(self):
        self.output("server start")
        self.output("server misbehave late --delay 1500")
        shown = self.on_terminal("call Echo echo hello")
        self.assertRegex(shown, r"the server works on 5 bytes, \d+\.\d s")
        self.assertRegex(shown, r"\r\x1b\[Khello\n$")

    def test_Repeat_SummarisesTheTimes(self):
        times = self.json("call Counter add 01000000 --hex --repeat 100 --json")
        self.assertEqual((times["calls"], times["bytesSent"], times["bytesReceived"]), (100, 4, 4))
        figures = times["microseconds"]
        self.assertLessEqual(figures["min"], figures["median"])
        self.assertLessEqual(figures["median"], figures["p99"])
        self.assertLessEqual(figures["p99"], figures["max"])
        self.assertLessEqual(figures["max"], figures["total"])
        shown = self.output(f"call Counter add 01000000 --hex --repeat 3 --output '{self.home}/sum'")
        self.assertRegex(shown, r"^3 calls in .+ s: \d+ calls per second\nmin .+ us, median .+ us, p99 .+ us, max .+ us\n"
                                r"each sent 4 bytes and received 4 bytes\n$")
        self.assertEqual((self.home / "sum").read_bytes(), b"\3\0\0\0")

    def test_Failure_IsToldOnceAndRecorded(self):
        for arguments, reason in (("call Echo none", "posCallMethod failed"), ("call None echo", "posInstantiateObject failed")):
            self.assert_fails(arguments, f"{reason}; the alert, or the message above, tells why")
        self.assertIn('the class Echo has no method "none"', self.dovrel("call Echo none").stderr)

    def test_WithoutAServer_FailsWithTheReason(self):
        self.run_as(True, f'rm -r "{self.products}/Merrowd.app"', self.folder)
        self.assert_fails("call Echo echo", "posRegisterApplicationWithClasses failed")

    def test_WithoutALibrary_FailsWithThePathThatWasTried(self):
        self.run_as(True, f'rm -r "{self.products}/Dovrel.bundle"', self.folder)
        self.assert_fails("call Echo echo", f"the library cannot be loaded: .*there is no {self.products}/Dovrel.bundle")
        self.assert_fails("call Echo echo --bundle /nowhere", "the library cannot be loaded: /nowhere/")

    def test_WrongArguments_StartNothing(self):
        for arguments in ("call Echo echo 6 --hex", "call Echo echo 6x --hex", "call ThisNameIsTooLong echo", "info 65536",
                          "info x", "call Echo echo --repeat 0", "call Echo echo text --file /dev/null",
                          "call Echo echo --format pretty",
                          "call Echo echo --file ''", "call Echo echo x --output ''", "call Echo echo x --executer ''",
                          "call Echo echo x --bundle ''"):
            self.assertEqual(self.dovrel(arguments).returncode, 2, arguments)
        self.assertEqual(self.servers(), [])

    def test_FilesThatCannotBeUsed_AreFailuresWithTheReason(self):
        self.assert_fails("call Echo echo --file /nowhere/file", "cannot read /nowhere/file: No such file or directory")
        self.assert_fails("call Echo echo --file /", "cannot read /: Is a directory")
        self.assert_fails("call Echo echo x --output /nowhere/file", "cannot write /nowhere/file: No such file or directory")
        self.assert_fails("call Echo echo x --output /dev/full", "cannot write /dev/full: No space left on device")

    def test_ResultThatDoesNotFitOnTheDisk_LeavesTheOldFile(self):
        self.run_as(False, "printf %s 'the old content' >copy", self.home)
        (self.home / "data").write_bytes(bytes(3000))
        self.output("server start")
        self.assert_fails(f"call Echo echo --file '{self.home}/data' --output '{self.home}/copy'",
                          f"cannot write {self.home}/copy: File too large", setup="ulimit -f 1")
        self.assertEqual((self.home / "copy").read_text(), "the old content")

    def test_Output_OfAHyphen_IsStandardOutput(self):
        self.assertEqual(self.output("call Echo echo hello --output -"), "hello")

    def test_Application_IsUnregisteredAfterwards(self):
        self.output("call Echo echo hello")
        self.assertEqual(self.json("server status --json")["applications"], 0)


class Command(InstalledTool):
    def test_CommandAndArgument_AreSent(self):
        self.assertEqual(self.output("command ping hello"), "hello")
        self.assertEqual(self.output("command 70696E67 6869 --hex-command --hex"), "hi")
        self.assertIn("\nEcho\n", self.output("command classes"))
        self.assertRegex(self.output("command ping x --repeat 5"), "^5 calls in ")

    def test_UnknownCommand_IsAFailure(self):
        self.assert_fails("command nonsense", "posExecuteCMD failed")


class Info(InstalledTool):
    def test_Request_IsANumberOrBytes(self):
        self.assertEqual(self.output("info 1"), self.output("command version"))
        self.assertEqual(self.output("info 0100 --hex"), self.output("info 0x1"))

    def test_Number_IsDecimalOrHexadecimalWithoutASign(self):
        self.assertEqual(self.json("info 0352 --json"), self.json("info 352 --json"))
        self.assertEqual(self.json("info 0x0160 --json"), self.json("info 352 --json"))
        for number in ("-18446744073709551615", "-1", "+1", "' 1'", "0x", "0x-1", "0x10000", "1x", "''"):
            self.assertEqual(self.dovrel(f"info -- {number}").returncode, 2, number)

    def test_InterfaceVersion_NeedsNoServer(self):
        self.assertEqual(self.json("info 352 --json"), {"size": 4, "hexadecimal": "07000000"})
        self.assertEqual(self.servers(), [])
