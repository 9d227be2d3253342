"""The completion for bash offers what --help lists, for every subcommand of the tool."""
import os
import re
import subprocess
import unittest
from pathlib import Path

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
TOOL = BUILD / "tools/dovrel"
SCRIPT = BUILD / "tools/completion/dovrel"

COMPLETE = """source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=()
_dovrel
[ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\\n' "${COMPREPLY[@]}"
"""


def complete(*words):
    """What bash offers for the last of the words."""
    run = subprocess.run(["bash", "--norc", "-c", COMPLETE, "bash", SCRIPT, "dovrel", *words], capture_output=True, text=True,
                         check=True)
    return run.stdout.split()


def read_help(*command):
    return subprocess.run([TOOL, *command, "--help"], capture_output=True, text=True, check=True).stdout


def section(text, title):
    """The first words of the lines below a title, up to the next blank line. Lines that continue a description are deeper."""
    found = re.search(rf"^{title}:\n((?:  .*\n)*)", text, re.MULTILINE)
    return re.findall(r"^  (\S+)", found[1], re.MULTILINE) if found else []


def all_commands(*command):
    yield command
    for name in section(read_help(*command), "Subcommands"):
        yield from all_commands(*command, name)


class Completion(unittest.TestCase):
    def test_Subcommands_AreThoseOfTheHelp(self):
        for command in all_commands():
            self.assertEqual(sorted(complete(*command, "")), sorted(section(read_help(*command), "Subcommands")), command)
        self.assertIn("decode", complete("dec"))

    def test_Options_AreThoseOfTheHelp(self):
        for command in all_commands():
            names = ",".join(section(read_help(*command), "Options")).split(",")
            listed = [name.removesuffix("{false}") for name in names]  # the help shows flags that switch something off so
            self.assertIn("--help", listed)
            self.assertEqual(sorted(complete(*command, "-")), sorted(listed), command)

    def test_ValuesFromAList_AreOffered(self):
        self.assertEqual(complete("decode", "--kind", ""), ["block", "object", "list", "pack"])
        self.assertEqual(complete("decode", "--kind", "p"), ["pack"])

    def test_OtherValues_AreLeftToBash(self):
        self.assertEqual(complete("properties", "convert", "--output", ""), [])
        self.assertEqual(complete("decode", ""), [])

    def test_WordsAfterTwoHyphens_AreThoseOfAnotherCommand(self):
        self.assertEqual(complete("record", "--", "./host", "--"), [])
        self.assertEqual(complete("record", "--", "./host", "--app"), [])
        self.assertEqual(complete("replay", "file", "--", ""), [])

    def test_OptionsBeforeTheWord_ChangeNothing(self):
        self.assertIn("--all", complete("decode", "--kind", "list", "--a"))
        self.assertEqual(complete("properties", "che"), ["check"])

    def test_SubcommandCompletion_PrintsTheInstalledScript(self):
        printed = subprocess.run([TOOL, "completion"], capture_output=True, text=True, check=True).stdout
        self.assertEqual(printed, SCRIPT.read_text())


if __name__ == "__main__":
    unittest.main()
