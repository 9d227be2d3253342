"""What all subcommands of the tool have in common."""
import re
import subprocess
import unittest

from installation import SOURCES
from installed_tool import TOOL, InstalledTool

HEADER = (SOURCES / "include/dovrel/pos.h").read_text()


def run(*arguments, **options):
    return subprocess.run([TOOL, *arguments], capture_output=True, text=True, check=False, **options)


def subcommands(*names):
    """The names of all subcommands below one, each with the names before it."""
    help_text = run(*names, "--help").stdout
    found = []
    for name in re.findall(r"^  (\w+) ", help_text.partition("\nSubcommands:\n")[2].partition("\n\n")[0], re.MULTILINE):
        found += [[*names, name], *subcommands(*names, name)]
    return found


class Tool(unittest.TestCase):
    def test_Help_OfEverySubcommand_HasAnExampleAndTheExitStatus(self):
        found = subcommands()
        for expected in (["call"], ["command"], ["info"], ["doctor"], ["report"], ["status"], ["server", "misbehave"],
                         ["decode"], ["properties", "set"], ["texts", "check"], ["completion"]):
            self.assertIn(expected, found)
        for names in found:
            result = run(*names, "--help")
            self.assertEqual((result.returncode, result.stderr), (0, ""), names)
            examples = result.stdout.partition("\nExamples:\n")[2].partition("\n\n")[0]
            self.assertIn(f"dovrel {' '.join(names)}", examples)
            self.assertIn("Exit status: 0 success, 1 failure or troubles found, 2 wrong arguments", result.stdout)

    def test_Version_IsThatOfTheHeader(self):
        version = ".".join(re.findall(r"#define POS_VERSION_\w+ (\d+)", HEADER))
        result = run("--version")
        self.assertEqual((result.returncode, result.stdout), (0, f"dovrel {version}\n"))

    def test_WrongArguments_AreOneLineAndStatusTwo(self):
        for arguments in ([], ["nonsense"], ["call"], ["call", "Echo"], ["status"], ["server"], ["--nonsense"],
                          ["server", "status", "--timeout", "soon"], ["info", "1", "2"]):
            result = run(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""), arguments)
            self.assertRegex(result.stderr, r"^dovrel: .+\n$")
            self.assertEqual(result.stderr.count("\n"), 1, result.stderr)

    def test_OutputThatCannotBeWritten_IsAFailure(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([TOOL, "status", "27"], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual((result.returncode, result.stderr), (1, "dovrel: cannot write to standard output\n"))


class Colours(InstalledTool):
    def test_OnATerminal_AreShown(self):
        self.assertIn("\x1b[32mok", self.on_terminal("doctor"))

    def test_WithNoColor_AreNotShown(self):
        self.assertNotIn("\x1b[", self.on_terminal("doctor", "export NO_COLOR=1"))

    def test_InAFile_AreNotShown(self):
        self.assertNotIn("\x1b[", self.output("doctor"))
