"""dovrel record and dovrel replay, with the example host. The commands are those of docs/recordings.md."""
import re
import shutil

from installation import SOURCES
from installed_tool import BUILD, InstalledTool

PAGE = (SOURCES / "docs/recordings.md").read_text()
RECORD, REPLAY = re.findall(r"^```sh\n(.*?)^```$", PAGE, re.MULTILINE | re.DOTALL)

# A class that takes the place of the server's own one and computes nothing.
BROKEN_DIGEST = "//CLASS\nSTR:Digest\n//methods\nSTR:md5\n//md5.answer\nSTR:broken\n"


class Recordings(InstalledTool):
    def setUp(self):
        super().setUp()
        self.work = self.new_folder("work")
        shutil.copy(BUILD / "examples/host", self.work / "host")
        (self.work / "photo.jpg").write_bytes(bytes(range(256)) * 4000)
        (self.work / "other.jpg").write_bytes(b"another file")
        self.setup = (f'PATH="{self.root}/bin:$PATH" DOVREL_BUNDLE="{self.products}/Dovrel.bundle"\n'
                      f'export POS_SYSTEM_ROOT="{self.root}" POS_ALERTS=log\n')

    def shell(self, commands):
        return self.run_as(False, self.setup + commands, self.work)

    def run_host(self, variables="", file="photo.jpg"):
        return self.shell(f'{variables} ./host "$DOVREL_BUNDLE" {file}')

    def record(self):
        """Records the host as the page does, then breaks the class that it used. Returns what the host printed."""
        result = self.shell(RECORD)
        self.expect(result, 0)
        self.assertEqual(result.stderr, f"dovrel: 7 exchanges are recorded in {self.work}/demo.recording\n")
        self.assertIn("digest: ", result.stdout)
        self.assertEqual((self.work / "demo.recording").stat().st_mode & 0o777, 0o600)
        (self.work / "Broken.conf").write_text(BROKEN_DIGEST)
        self.expect(self.shell("dovrel server load Broken.conf"), 0)
        broken = self.run_host()
        self.assertNotEqual(broken.stdout, result.stdout)
        return result.stdout

    def test_Replay_WithoutTheServersClasses_PrintsWhatTheRecordedHostPrinted(self):
        recorded = self.record()
        for command in (REPLAY, REPLAY.replace("replay ", "replay --strict ")):
            for _ in range(2):
                result = self.shell(command)
                self.expect(result, 0)
                self.assertEqual(result.stdout, recorded)
                self.assertEqual(result.stderr,
                                 "dovrel: 7 requests were replayed, 0 were not in the recording\n")

    def test_Replay_ByANewServer_NeedsNothingButTheRecording(self):
        recorded = self.record()
        self.expect(self.shell("dovrel server stop"), 0)
        (self.products / "Merrowd.conf").write_text(BROKEN_DIGEST)
        result = self.shell(REPLAY)
        self.expect(result, 0)
        self.assertEqual(result.stdout, recorded)

    def test_Replay_OfARequestThatTheRecordingDoesNotHave_FailsAndIsLogged(self):
        self.record()
        result = self.shell(REPLAY.replace("photo", "other"))
        self.expect(result, 1)
        self.assertTrue(result.stderr.endswith("1 were not in the recording\n"), result.stderr)
        self.assertIn(' replay: the recording does not have this request here: call method, method name = "md5"\n',
                      (self.logs / "Merrowd.log").read_text())

    def test_Replay_WithoutACommand_GoesOnUntilTheSettingIsEmpty(self):
        recorded = self.record()
        self.expect(self.shell("dovrel replay demo.recording"), 0, "the server replays 7 exchanges\n")
        self.assertEqual(self.run_host().stdout, recorded)
        self.expect(self.shell("dovrel server set replay ''"), 0)
        self.assertNotEqual(self.run_host().stdout, recorded)

    def test_Replay_ForACommandThatCannotBeStarted_Ends(self):
        recorded = self.record()
        result = self.shell("dovrel replay demo.recording -- ./missing")
        self.expect(result, 1)
        self.assertEqual(result.stderr, "dovrel: cannot run ./missing: No such file or directory\n")
        self.assertNotEqual(self.run_host().stdout, recorded)

    def test_Replay_WithoutARecording_Fails(self):
        result = self.shell("dovrel replay nowhere -- ./host")
        self.expect(result, 1)
        self.assertEqual(result.stderr, f"dovrel: Could not open file for reading: {self.work}/nowhere\n"
                                        f"dovrel: there is nothing to replay in {self.work}/nowhere\n")

    def test_Classes_AreSettingsWithWhichTheServerDoesWhatItDid(self):
        recorded = self.record()
        self.expect(self.shell("dovrel replay --classes demo.recording > Classes.conf\n"
                               "dovrel server load Classes.conf"), 0)
        self.assertEqual(self.run_host().stdout, recorded)
        self.assertIn("The recording has no call with this argument.", self.run_host(file="other.jpg").stderr)

    def test_HostsAtTheSameTime_RecordIntoOneFile(self):
        variables = f'POS_RECORD="{self.work}/all.recording"'
        result = self.shell("".join(f'{variables} ./host "$DOVREL_BUNDLE" {file} > {file}.out & '
                                    for file in ("photo.jpg", "other.jpg", "host")) + "wait")
        self.expect(result, 0)
        self.assertEqual((self.work / "all.recording").read_text().count("//EXCHANGE\n"), 21)
        for file in ("host", "photo.jpg", "other.jpg"):
            replayed = self.shell(f'dovrel replay all.recording -- ./host "$DOVREL_BUNDLE" {file}')
            self.expect(replayed, 0)
            self.assertEqual(replayed.stdout, (self.work / f"{file}.out").read_text())

    def test_TroubleThatWasRecorded_ComesAgain(self):
        self.expect(self.shell("dovrel server start\ndovrel server misbehave cut --command 'call method'"), 0)
        recorded = self.shell(RECORD)
        self.expect(recorded, 1)
        self.expect(self.shell("dovrel server misbehave none"), 0)
        replayed = self.shell(REPLAY)
        self.expect(replayed, 1)
        self.assertEqual(replayed.stdout, recorded.stdout)

    def test_RecordingThatCannotBeWritten_ChangesNothing(self):
        expected = self.run_host()
        self.expect(expected, 0)
        for path in ("/nowhere/file", "/dev/full", self.work):
            self.assertEqual(self.run_host(f'POS_RECORD="{path}"').stdout, expected.stdout)
        result = self.shell('dovrel record -o /nowhere/file -- ./host "$DOVREL_BUNDLE" photo.jpg')
        self.expect(result, 0)
        self.assertEqual(result.stdout, expected.stdout)
        self.assertEqual(result.stderr, "dovrel: nothing was recorded: no host sent a request, or /nowhere/file "
                                        "cannot be written\n")

    def test_Record_AddsToAFileOnlyIfItIsTold(self):
        self.expect(self.shell(RECORD), 0)
        result = self.shell(RECORD)
        self.expect(result, 1)
        self.assertEqual((result.stdout, result.stderr),
                         ("", f"dovrel: there is already a file {self.work}/demo.recording (--append adds to it)\n"))
        result = self.shell(RECORD.replace("record ", "record --append "))
        self.expect(result, 0)
        self.assertEqual(result.stderr, f"dovrel: 7 exchanges were added; 14 are recorded in {self.work}/demo.recording\n")

    def test_Record_ThatAddsNothing_SaysSo(self):
        self.expect(self.shell(RECORD), 0)
        (self.work / "link").symlink_to("demo.recording")
        host = './host "$DOVREL_BUNDLE" photo.jpg'
        for file, command in (("demo.recording", "true"), ("link", host)):
            result = self.shell(f"dovrel record --append -o {file} -- {command}")
            self.expect(result, 0)
            self.assertEqual(result.stderr.splitlines()[0], "dovrel: nothing was added: no host sent a request, or "
                                                            f"{self.work}/{file} cannot be written")

    def test_PathThroughALink_IsThatOfTheSystem(self):
        # The folder above the link's target is not the one above the link.
        (self.work / "inner/target").mkdir(parents=True)
        (self.work / "link").symlink_to("inner/target")
        self.expect(self.run_as(True, f"chown -R --reference='{self.work}' '{self.work}'", self.work), 0)
        self.expect(self.shell(RECORD.replace("demo.recording", "link/../demo.recording")), 0)
        self.assertTrue((self.work / "inner/demo.recording").exists())
        self.expect(self.shell(REPLAY.replace("demo.recording", "link/../demo.recording")), 0)
        self.assertFalse((self.work / "demo.recording").exists())

    def test_OptionsThatClassesWouldIgnore_AreRejected(self):
        self.record()
        for arguments in ("--classes --strict demo.recording", "--classes demo.recording -- ./host"):
            result = self.shell(f"dovrel replay {arguments}")
            self.expect(result, 2)
            self.assertRegex(result.stderr, r"^dovrel: .* excludes .*\n$")

    def test_EmptyFileName_IsRejected(self):
        self.expect(self.shell("dovrel record -o '' -- true"), 2)
        self.expect(self.shell("dovrel replay '' -- true"), 2)

    def test_Help_TellsTheExitStatusAfterTheCommand(self):
        for name in ("record", "replay"):
            shown = " ".join(self.output(f"{name} --help").split())
            self.assertIn("the tool exits with the status of the command, or with 128 plus the number of the signal", shown)

    def test_CommandsExitStatus_IsKnownAlsoIfSignalsAreIgnored(self):
        result = self.shell("env --ignore-signal=CHLD dovrel record -- sh -c 'exit 7'")
        self.assertEqual((result.returncode, result.stderr.count("\n")), (7, 1), result.stderr)

    def test_InterruptThatWasIgnoredBefore_IsIgnoredByTheCommand(self):
        for name in ("INT", "QUIT"):
            result = self.shell(f"env --ignore-signal={name} dovrel record -- sh -c 'kill -{name} $$; echo goes on'")
            self.expect(result, 0)
            self.assertEqual(result.stdout, "goes on\n")
            number = {"INT": 2, "QUIT": 3}[name]
            self.assertEqual(self.shell(f"env --default-signal={name} dovrel record -- sh -c 'kill -{name} $$; echo no'").returncode,
                             128 + number)

    def test_Record_EndsAsTheCommandEnds(self):
        self.assertEqual(self.shell("dovrel record -- sh -c 'exit 7'").returncode, 7)
        self.assertEqual(self.shell("dovrel record -- sh -c 'kill -TERM $$'").returncode, 128 + 15)
        result = self.shell("dovrel record -- ./missing")
        self.expect(result, 1)
        self.assertEqual(result.stderr, "dovrel: cannot run ./missing: No such file or directory\n")
        self.expect(self.shell("dovrel record"), 2)
