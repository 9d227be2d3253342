"""dovrel server"""
import os
import signal
import subprocess

from installed_tool import InstalledTool


class Server(InstalledTool):
    def start(self):
        self.output("server start")
        server, = self.servers()
        return server

    def test_Start_WaitsUntilTheServerAnswersAndStartsNoSecondOne(self):
        first = self.output("server start")
        server, = self.servers()
        self.assertEqual(first, f"the server runs: process {server}\n")
        self.assertEqual(self.output("server start"), f"the server was running already: process {server}\n")
        self.assertEqual(self.servers(), [server])

    def test_Start_WithoutAServer_FailsWithThePath(self):
        self.run_as(True, f'rm -r "{self.products}/Merrowd.app"', self.folder)
        self.assert_fails("server start", f"no server is installed: there is no {self.products}/Merrowd.app")

    def test_Stop_WaitsForTheEnd(self):
        server = self.start()
        self.assertEqual(self.output("server stop"), f"the server has ended: process {server}\n")
        self.assertEqual(self.servers(), [])
        self.assertEqual(self.output("server stop"), "no server runs\n")

    def test_Stop_WithoutWaiting_Returns(self):
        self.start()
        self.assertEqual(self.output("server stop --no-wait"), "")
        self.wait_until(lambda: not self.servers())

    def test_Stop_OfAServerThatHangs_FailsAfterTheTimeAndForceEndsIt(self):
        server = self.start()
        os.kill(server, signal.SIGSTOP)
        self.assert_fails("server stop --timeout 1", r"the server still runs after 1 s \(process \d+\); --force ends it")
        self.assertEqual(self.output("server stop --force"), f"the server has ended: process {server}\n")
        self.assertEqual(self.servers(), [])

    def test_ServerUnderAnInterpreter_IsFoundAndEnded(self):
        program = self.products / "Merrowd.app/Contents/MacOS/Merrowd"
        self.expect(self.run_as(True, f"""mv "{program}" "{program}.real"
cat >"{program}" <<'END'
#!/bin/sh
"$0.real"
END
chmod 755 "{program}" """, self.folder), 0)
        self.assertEqual(self.output("server start"), "the server runs: its process is not known\n")
        self.assertTrue(self.json("server status --json")["running"])
        self.assertIn("a server of this user runs under another program", self.output("doctor"))
        self.assert_fails("server stop --force", "the process of the server is not known")
        self.assertEqual(self.output("server stop"), "the server has ended: its process is not known\n")
        self.wait_until(lambda: not self.servers())

    def test_Status_TellsWhetherAServerRuns(self):
        result = self.dovrel("server status")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (1, "no server runs\n", ""))
        server = self.start()
        self.assertEqual(self.output("server status"), f"applications: 0\nobjects: 0\nprocess: {server}\n")
        status = self.json("server status --json")
        self.assertEqual((status["running"], status["process"]), (True, server))

    def test_Settings_AreLoadedFromAFileOrStandardInput(self):
        self.start()
        (self.folder / "settings").write_text("//interfaceVersion\nINT:6\n")
        self.output(f"server load '{self.folder}/settings'")
        self.assertIn("6, the library needs 7", self.dovrel("doctor").stdout)
        self.output("server load <<<$'//interfaceVersion\\nINT:7'")
        self.assertNotIn("the library needs", self.dovrel("doctor").stdout)

    def test_Problems_AreToldAndAFailure(self):
        self.start()
        for arguments, problem in (("server set colour 1", 'line 1: there is no setting "colour"'),
                                   ("server set log yes", 'line 1: the value "yes" of "log" does not fit'),
                                   ("server misbehave nonsense", 'line 1: the value "nonsense" of "misbehave" does not fit'),
                                   ("server load <<<log=1", 'line 1: "log=1" is not part of an entry')):
            self.assert_fails(arguments, f"the server reports: {problem}")

    def test_Problems_AreToldInTheOrderOfTheirLines(self):
        names = [f"wrong{number:02}" for number in range(1, 13)]
        settings = self.products / "Merrowd.conf"
        settings.write_text("".join(f"//{name}\nINT:1\n" for name in names))
        self.start()
        (self.folder / "settings").write_text(settings.read_text())
        result = self.dovrel(f"server load '{self.folder}/settings'")
        self.expect(result, 1)
        told = [f'line {2 * number + 1}: there is no setting "{name}"' for number, name in enumerate(names)]
        self.assertEqual(result.stderr.splitlines(), [f"dovrel: the server reports: {problem}" for problem in told])
        shown = [line for line in self.output("server status").splitlines() if line.startswith("startProblem")]
        self.assertEqual(shown, [*(f"startProblem {number}: {settings}: {problem}" for number, problem in enumerate(told, 1)),
                                 "startProblems: 12"])

    def test_TimeOutThatThePlatformCannotCount_IsRejected(self):
        for command in ("status", "stop"):
            self.assert_fails(f"server {command} --timeout 35791395", ".*--timeout", 2)
        self.assert_fails("server status --timeout 71582789", ".*--timeout", 2)  # 44 ticks in 32 bits
        self.start()
        self.output("server status --timeout 35791394")

    def test_ProblemsOfTheSettingsFile_AreNamedByStatusTheLogAndAServerThatIsStartedByHand(self):
        settings = self.products / "Merrowd.conf"
        settings.write_text("//endAtStart\nINT:0\n//colour\nINT:1\n")
        problem = f'{settings}: line 3: there is no setting "colour"'
        self.start()
        self.assertIn(f"startProblem 1: {problem}\nstartProblems: 1\n", self.output("server status"))
        self.assertEqual(self.json("server status --json")["startProblem 1"], problem)
        self.assertIn(f" settings: {problem}\n", (self.logs / "Merrowd.log").read_text())
        self.output("server stop")
        settings.write_text("//endAtStart\nINT:1\n//colour\nINT:1\n")
        program = self.products / "Merrowd.app/Contents/MacOS/Merrowd"
        by_hand = self.run_as(False, f'POS_SYSTEM_ROOT="{self.root}" "{program}"', self.folder)
        self.assertEqual((by_hand.returncode, by_hand.stderr), (0, f"Merrowd: {problem}\n"))

    def test_WithoutAServer_SettingsFail(self):
        self.assert_fails("server set log 1", "no server of this user and this root runs")
        self.assertEqual(self.servers(), [])

    def test_Misbehaviour_HappensToTheChosenCommandAndEnds(self):
        self.start()
        self.output("server misbehave error --error 28 --error-text 'The paper is stuck.' --command 'call method' --times 1")
        self.assertIn("The paper is stuck.", self.dovrel("call Echo echo hello").stderr)
        self.assertEqual(self.output("call Echo echo hello"), "hello")
        self.output("server misbehave error --error 28")
        self.output("server misbehave none")
        self.assertEqual(self.output("call Echo echo hello"), "hello")

    def test_EmptyTextOfAMisbehaviour_ReplacesTheOldOne(self):
        self.start()
        self.output("server misbehave error --error 28 --error-text 'The paper is stuck.'")
        self.output("server misbehave error --error-text ''")
        self.assertNotIn("The paper is stuck.", self.dovrel("call Echo echo hello").stderr)
        self.assert_fails("server misbehave error --error ''", 'the server reports: line 3: the value "" of "errorCode"')

    def test_StandardInputThatCannotBeRead_IsAFailure(self):
        self.start()
        self.assert_fails("server load </", "cannot read standard input: Is a directory")

    def test_Log_ShowsTheLastLines(self):
        self.assert_fails("server log", "cannot read .*/Merrowd.log: No such file or directory; .*server set log 1")
        self.start()
        self.output("server set log 1")
        self.output("call Echo echo hello")
        content = (self.logs / "Merrowd.log").read_text()
        lines = content.splitlines(keepends=True)
        self.assertGreater(len(lines), 5)
        self.assertEqual(self.output("server log --lines 1000"), content)
        self.assertEqual(self.output("server log --lines 2"), "".join(lines[-2:]))
        self.assertEqual(self.output("server log --lines 0"), "")

    def test_Log_Followed_ShowsNewLinesAlsoOfANewFile(self):
        self.start()
        self.output("server set log 1")
        log = self.logs / "Merrowd.log"
        with subprocess.Popen(["bash", "-ec", self.command("server log --follow")], stdout=subprocess.PIPE, text=True,
                              start_new_session=True) as follower:
            try:
                self.assertIn("control:", follower.stdout.readline())
                self.output("call Echo echo first")
                self.read_until(follower, '"first"')
                self.run_as(True, f'rm "{log}"', self.folder)
                log.write_text("a new log\n")
                self.read_until(follower, "a new log")
            finally:
                os.killpg(follower.pid, signal.SIGTERM)

    def read_until(self, process, text):
        for line in process.stdout:
            if text in line:
                return
        self.fail(f"the output ended without {text}")
