"""dovrel status"""
import json
import unittest

from tool_test import run


class Status(unittest.TestCase):
    def meanings(self, number):
        result = run("status", number, "--json")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        meanings = json.loads(result.stdout)
        for meaning in meanings:
            self.assertGreater(len(meaning["whatToDo"]), 20)
        return [(meaning["kind"], meaning["number"], meaning["name"]) for meaning in meanings]

    def test_PlatformStatus_IsNamedAlsoIfItsSignWasLost(self):
        for number in ("-600", "64936", "0xFDA8", "0xFFFFFDA8", "4294966696"):
            self.assertEqual(self.meanings(number), [("platform status", -600, "procNotFound")], number)
        self.assertEqual(self.meanings("-609"), [("platform status", -609, "connectionInvalid")])
        self.assertEqual(self.meanings("-1712"), [("platform status", -1712, "errAETimeout")])
        self.assertEqual(self.meanings("100013"), [("platform status", 100013, "errno 13")])

    def test_ResultsOfFunctions_AreNamed(self):
        for number in ("0x80000008", "2147483656", "-2147483640"):
            self.assertEqual(self.meanings(number), [("result of a function", 0x80000008, "POS_FAILURE")], number)
        self.assertIn(("result of a function", 0, "POS_OK"), self.meanings("0"))

    def test_NumberWithSeveralMeanings_HasAll(self):
        self.assertEqual(self.meanings("3"), [
            ("error code of the server", 3, "unknown interface, format or command"),
            ("type of a failure in the client", 3, "missing field")])

    def test_ErrorSiteCode_IsExplained(self):
        for code in ("384269E80230", "384269e80230", "384269E80230: "):
            self.assertEqual(self.meanings(code), [
                ("error-site code", 0x230, "writer: no room for a part from a byte array")])

    def test_Text_ShowsTheNumberInBothForms(self):
        result = run("status", "27")
        self.assertTrue(result.stdout.startswith("error code of the server 27 (0x0000001B): method not found\n    "))

    def test_NumberWithoutAMeaning_IsAFailure(self):
        result = run("status", "4711")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertEqual(result.stderr, "dovrel: no number of the library or the platform: 4711\n")

    def test_OtherTexts_AreWrongArguments(self):
        for text in ("twelve", "12x", "", "0x", "384269E80231"):
            self.assertEqual(run("status", text).returncode, 2, text)
