"""dovrel doctor and report: what they say about healthy and about damaged installations"""
import json
import os
import signal
import subprocess
import unittest

from installation import IS_ROOT, USER
from installed_tool import TOOL, InstalledTool

NEEDS_ROOT = unittest.skipUnless(IS_ROOT, "root's rights are missing to be two users")


class Doctor(InstalledTool):
    def diagnose(self, arguments="", setup="", as_root=False):
        """The findings by subject and severity, after the doctor's status was compared with them."""
        result = self.dovrel(f"doctor --json {arguments}", setup, as_root)
        findings = json.loads(result.stdout)
        troubles = [finding for finding in findings if finding["severity"] == "trouble"]
        self.assertEqual((result.returncode, result.stderr), (1 if troubles else 0, ""), result.stdout)
        for finding in findings:
            if finding["severity"] in ("trouble", "warning"):
                self.assertGreater(len(finding["whatToDo"]), 20, finding)
        return findings

    def the_only(self, severity, findings):
        found = [finding for finding in findings if finding["severity"] == severity]
        self.assertEqual(len(found), 1, findings)
        return found[0]

    def assert_trouble(self, findings, subject, finding, what_to_do):
        """There is one trouble. Its texts match the expressions."""
        trouble = self.the_only("trouble", findings)
        self.assertEqual(trouble["subject"], subject)
        self.assertRegex(trouble["finding"], finding)
        self.assertRegex(trouble["whatToDo"], what_to_do)

    def as_administrator(self, commands):
        self.expect(self.run_as(True, f'cd "{self.products}"\n{commands}', self.folder), 0)

    def test_HealthyInstallation_HasNoTroubleAndNoWarning(self):
        findings = self.diagnose("--launch")
        self.assertEqual({finding["severity"] for finding in findings}, {"ok", "note"}, findings)
        self.assertEqual([finding["subject"] for finding in findings], [
            "root", "library", "language", "texts", "server", "server process", "handshake", "server version",
            "endpoint folder", "logs", "display", "alert helper", "error log"])
        said = {finding["subject"]: finding["finding"] for finding in findings}
        server, = self.servers()
        self.assertEqual(said["root"], f"{self.root} (from POS_SYSTEM_ROOT)")
        self.assertRegex(said["library"], r"^/.*/Dovrel\.bundle, version \d+\.\d+\.\d+, interface version 7$")
        self.assertEqual(said["language"], "English")
        self.assertIn("English, Francais, German", said["texts"])
        self.assertIn(f"process {server} of the user ", said["server process"])
        self.assertRegex(said["handshake"], r"^answered in \d+\.\d ms$")
        self.assertIn("interface version 7", said["server version"])
        self.assertEqual(said["endpoint folder"], f"{self.root}/tmp/pos-events-{USER}")
        self.assertEqual(said["logs"], str(self.logs))
        self.assertEqual(said["error log"], "no failure was recorded")

    def test_Text_EndsWithTheNumberOfTroubles(self):
        result = self.dovrel("doctor", 'export POS_ALERTS="" DISPLAY="" WAYLAND_DISPLAY=""')
        self.expect(result, 0)
        self.assertRegex(result.stdout, "warning  display .*\n         what to do: ")
        self.assertTrue(result.stdout.endswith("\n0 troubles, 1 warning\n"), result.stdout)

    def test_WithoutLaunch_StartsNoServer(self):
        findings = self.diagnose()
        self.assertIn("no server of this user runs; the first call launches it", [finding["finding"] for finding in findings])
        self.assertNotIn("handshake", [finding["subject"] for finding in findings])
        self.assertEqual(self.servers(), [])

    def test_NoServerInstalled_IsTrouble(self):
        self.as_administrator("rm -r Merrowd.app")
        self.assert_trouble(self.diagnose("--launch"), "server", f"no server is installed: there is no {self.products}/Merrowd.app",
                            "Install a server")

    def test_ServerThatCannotBeRun_IsTrouble(self):
        self.as_administrator("chmod a-x Merrowd.app/Contents/MacOS/Merrowd")
        self.assert_trouble(self.diagnose("--launch"), "server", "Merrowd cannot be run: Permission denied", "Install the server again")

    def test_ServerOfAWrongVersion_IsTroubleAndTheWayOutHelps(self):
        self.output("server start")
        self.output("server set interfaceVersion 6")
        self.assert_trouble(self.diagnose(), "server version",
                            "the server that runs has the interface version 6, the library needs 7",
                            "dovrel server set interfaceVersion 7")
        self.output("server set interfaceVersion 7")
        self.diagnose()
        self.output("server set interfaceVersion 6")
        self.output("server stop")
        self.assertEqual([], [finding for finding in self.diagnose("--launch") if finding["severity"] == "trouble"])

    @NEEDS_ROOT
    def test_ServerOfAnotherUser_IsAWarningWithTheUser(self):
        (self.root / "tmp").chmod(0o1777)
        self.expect(self.dovrel("server start", as_root=True), 0)
        other, = self.servers()
        for arguments in ("", "--launch"):
            warning = self.the_only("warning", self.diagnose(arguments))
            self.assertEqual(warning["subject"], "server process")
            self.assertEqual(warning["finding"],
                             f"process {other} is a server of the user root: it does not serve this user")
            self.assertIn("Each user has a server of his own", warning["whatToDo"])
        self.assertEqual(len(self.servers()), 2)

    def test_StoppedServer_IsTrouble(self):
        self.output("server start")
        server, = self.servers()
        os.kill(server, signal.SIGSTOP)
        self.addCleanup(os.kill, server, signal.SIGCONT)
        troubles = [finding for finding in self.diagnose() if finding["severity"] == "trouble"]
        self.assertEqual([trouble["subject"] for trouble in troubles], ["server process", "handshake"])
        self.assertIn(f"kill -CONT {server}", troubles[0]["whatToDo"])

    def test_DamagedTexts_AreTroubleWithTheLanguageOrTheFile(self):
        file = self.products / "Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls"
        whole = file.read_bytes()
        name = "MultiLanguageTexts.mls"
        german = whole.index(b"STR:German")
        key = b"//DLL_ERROR_DIALOG_TITLE\n"
        for damaged, finding in ((b"", f"{name} is damaged: it contains no language"),
                                 (os.urandom(4096).replace(b"/", b"."), f"{name} is damaged: it contains no language"),
                                 (whole[:german + 200], f"{name} is damaged: in the language German .* texts are missing"),
                                 (whole.replace(key, b"//X\n", 1), "in the language English 1 text is missing, the first is "
                                                                   "DLL_ERROR_DIALOG_TITLE")):
            file.write_bytes(damaged)
            self.assert_trouble(self.diagnose(), "texts", finding, "Install the library again")
        file.unlink()
        self.assert_trouble(self.diagnose(), "texts", name, "Install the library again")

    def test_LanguageOfTheUser_IsNamed(self):
        for setting, finding in (("LANG=de_DE.UTF-8", "German"),
                                 ("LANG=es_ES.UTF-8", "Spanish, which has no texts; the library shows the English ones")):
            said = {finding["subject"]: finding["finding"] for finding in self.diagnose(setup=f"export {setting}")}
            self.assertEqual(said["language"], finding)

    def test_LogFolderOfAnotherUser_IsTrouble(self):
        self.as_administrator(f'chmod 0555 "{self.logs}"')
        self.assert_trouble(self.diagnose(), "logs", f"this user may not write to {self.logs}: Permission denied", "mode 777")

    def test_InstallationThatMayNotBeRead_IsTroubleOfLibraryAndServer(self):
        self.as_administrator("chmod 0000 .")
        self.addCleanup(self.as_administrator, "true")
        self.addCleanup(self.products.chmod, 0o755)
        troubles = [finding for finding in self.diagnose() if finding["severity"] == "trouble"]
        self.assertEqual([trouble["subject"] for trouble in troubles], ["library", "texts", "server", "alert helper"])
        for trouble in (troubles[0], troubles[2]):
            self.assertIn("Let root allow all users", trouble["whatToDo"])

    @NEEDS_ROOT
    def test_EndpointFolderOfAnotherUser_IsTroubleUnlessThereIsAnotherPlace(self):
        folder = f"{self.root}/tmp/pos-events-{USER}"
        self.as_administrator(f'mkdir -m 700 "{folder}"')
        finding = f"{folder} cannot be used: it belongs to the user with the number 0"
        self.assert_trouble(self.diagnose(setup="unset XDG_RUNTIME_DIR"), "endpoint folder", finding,
                            "Let its owner or root remove it")
        warning = self.the_only("warning", self.diagnose("--launch"))
        self.assertIn(f"{finding}. The library uses {self.runtime}/pos-events instead", warning["finding"])

    def test_EndpointFolderThatOthersMayEnter_IsTrouble(self):
        folder = self.new_folder(f"home/dovrel/tmp/pos-events-{USER}")
        folder.chmod(0o755)
        self.assert_trouble(self.diagnose(), "endpoint folder", "cannot be used: other users may enter it", "mode 700")

    def test_EndpointFolderThatCannotBeCreated_IsTrouble(self):
        (self.root / "tmp").chmod(0o555)
        self.assert_trouble(self.diagnose(setup="unset XDG_RUNTIME_DIR"), "endpoint folder",
                            f"this user cannot create {self.root}/tmp/pos-events-{USER}", "mode 1777")

    def test_NoDisplay_IsAWarning(self):
        warning = self.the_only("warning", self.diagnose(setup="unset POS_ALERTS DISPLAY WAYLAND_DISPLAY"))
        self.assertEqual(warning["subject"], "display")
        self.assertIn("no alert can be shown", warning["finding"])
        self.assertIn("POS_ALERTS=log", warning["whatToDo"])
        for setup in ("unset POS_ALERTS DISPLAY WAYLAND_DISPLAY", ""):
            display, = [finding for finding in self.diagnose(setup=setup) if finding["subject"] == "display"]
            self.assertRegex(display["finding"], "(?i)failures go to the host's standard error")
        said = {finding["subject"]: finding["finding"]
                for finding in self.diagnose(setup="unset POS_ALERTS WAYLAND_DISPLAY; export DISPLAY=:77")}
        self.assertEqual(said["display"], ":77")

    def test_MissingAlertHelper_IsTrouble(self):
        self.as_administrator("rm Dovrel.bundle/Contents/MacOS/dovrel-alert")
        self.assert_trouble(self.diagnose(), "alert helper", "no alert can be shown: .*dovrel-alert: No such file",
                            "Install the library again")

    def test_AlertHelperThatDoesNotStart_IsTrouble(self):
        self.as_administrator("rm Dovrel.bundle/Contents/MacOS/dovrel-alert\n"
                              "cp /bin/false Dovrel.bundle/Contents/MacOS/dovrel-alert")
        self.assert_trouble(self.diagnose(), "alert helper", "it does not start", "Install the library again")

    def test_AlertHelper_IsTestedAlsoIfEndsOfChildrenAreIgnored(self):
        self.as_administrator("rm Dovrel.bundle/Contents/MacOS/dovrel-alert\n"
                              "cp /bin/false Dovrel.bundle/Contents/MacOS/dovrel-alert")
        result = self.run_as(False, f'export POS_SYSTEM_ROOT="{self.root}" POS_ALERTS=log\n'
                                    f'env --ignore-signal=CHLD "{self.root}/bin/dovrel" doctor', self.folder)
        self.expect(result, 1)
        self.assertRegex(result.stdout, "trouble +alert helper +.*it does not start")

    def test_MissingLibrary_IsTrouble(self):
        self.as_administrator("rm Dovrel.bundle/Contents/MacOS/Dovrel")
        self.assert_trouble(self.diagnose(), "library", "Dovrel is missing, damaged", "Install the library again")

    def test_CutLibrary_IsTroubleAndIsNotLoaded(self):
        self.as_administrator("cd Dovrel.bundle/Contents/MacOS; cp Dovrel copy; truncate --size 100000 copy; mv copy Dovrel")
        self.assert_trouble(self.diagnose(), "library", "Dovrel is missing, damaged", "Install the library again")

    def test_WrongRoots_AreToldWithTheVariable(self):
        result = self.run_as(False, f'export POS_SYSTEM_ROOT=/nowhere/root POS_ALERTS=log; "{self.root}/bin/dovrel" doctor',
                             self.folder)
        self.expect(result, 1)
        self.assertIn("trouble  root             there is no folder /nowhere/root\n", result.stdout)
        result = self.run_as(False, f'export POS_SYSTEM_ROOT=relative POS_ALERTS=log; "{self.root}/bin/dovrel" doctor',
                             self.folder)
        self.assertIn('POS_SYSTEM_ROOT is ignored because "relative" is a relative path', result.stdout)

    def test_LastFailures_AreShown(self):
        for number in range(5):
            self.dovrel(f"call Echo none{number}")
        shown = [finding["finding"] for finding in self.diagnose() if finding["subject"] == "error log"]
        self.assertEqual(len(shown), 4, shown)
        self.assertIn("5 entries", shown[0])
        for number, entry in enumerate(shown[1:], 2):
            self.assertRegex(entry, rf'^\d{{4}}-.*Z, dovrel: the class Echo has no method "none{number}" \(type 27, method not found\)')

    def test_ErrorLogThatCannotBeRead_IsAWarningWithTheReason(self):
        log = self.logs / "POSDLLErrorLog.txt"
        log.write_text("")
        self.as_administrator(f"chmod 0000 '{log}'")
        warning = [finding for finding in self.diagnose() if finding["subject"] == "error log"][0]
        self.assertEqual((warning["severity"], warning["finding"]),
                         ("warning", f"this user may not read {log}: Permission denied"))
        self.assertIn("Let its owner or root", warning["whatToDo"])

    def test_ErrorLogThatCannotBeDeciphered_IsAWarningWithoutAnotherReason(self):
        log = self.logs / "POSDLLErrorLog.txt"
        enciphered = subprocess.run([TOOL, "properties", "encipher", "-"], input=b"//TIME\nSTR:now\n", capture_output=True,
                                    check=True).stdout
        log.write_bytes(enciphered[:-4] + b"!!!!")
        warning = self.the_only("warning", self.diagnose())
        self.assertEqual(warning["finding"], f"Could not decipher file: {log}")
        self.assertIn("Rename the file", warning["whatToDo"])

    def test_Report_NamesTheInstalledVersions(self):
        report = self.output("report")
        self.assertRegex(report, r"\n  Server application: \d+\.\d+\.\d+ ")
        self.assertRegex(report, r"\n  Client library: \d+\.\d+\.\d+ ")

    def test_Report_WithoutALibrary_Fails(self):
        self.as_administrator("rm -r Dovrel.bundle")
        self.assert_fails("report", "the report needs the installed library: .*missing or damaged")
