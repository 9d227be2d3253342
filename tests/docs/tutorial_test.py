"""Follows docs/tutorial.md with this build's products, as a user who is not root."""
import os
from pathlib import Path

from installation import Installation
from tutorial import BLOCKS, CODE, FILES, FOLDER, STEPS, VARIABLES

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])


class Tutorial(Installation):
    def setUp(self):
        super().setUp()
        self.expect(self.run_as(True, f'cmake --install "{BUILD}" --prefix "{self.root}"', self.folder), 0)
        self.expect(self.run_as(False, FOLDER, self.home), 0)
        self.work = self.home / "tutorial"

    def run_step(self, commands):
        # The folder exists already, and each step runs in a shell of its own.
        enter = FOLDER.split("\n", 1)[1]
        return self.run_as(False, VARIABLES + enter + commands, self.home)

    def assert_shows(self, result, expected):
        """The lines occur in this order, possibly within longer ones. Standard error comes last."""
        self.expect(result, 0)
        lines = (result.stdout + result.stderr).splitlines()
        self.assertTrue(expected)
        missing = [text for text in expected if not any(text in line for line in lines)]
        self.assertEqual(missing, [], "\n".join(lines))

    def test_EveryStep_ShowsWhatThePageShows(self):
        for name, content in FILES.items():
            if "/" not in name:
                (self.work / name).write_text(content)
        for step in STEPS:
            result = self.run_step(step.content)
            if step.expected:
                self.assert_shows(result, step.expected)
            else:
                self.expect(result, 0)
        self.wait_until(lambda: not self.servers())

    def test_Blocks_AreAllRunByTests(self):
        labels = {block.label for block in BLOCKS if block.kind == "sh"}
        self.assertEqual(labels, {"", "packages", "source", "variables", "folder", "code"})
        self.assertEqual(len(STEPS), 6)
        self.assertEqual(sorted(FILES), ["greeter.c", "greeter.conf", "greeter.py", "server/classes/Greeter.cpp"])
        self.assertTrue(CODE.expected)
