"""Runs README.md's quick start, scripts/demo and the tutorial's class in C++ in a new copy of the source, where everything
is built again."""
import shutil

from installation import IS_ROOT, SOURCES, Installation
from quick_start import BUILD_COMMANDS, COMPILE_AND_RUN, HOST, INSTALL, QUIT
from tutorial import BUILD_AGAIN, CODE, FILES, FOLDER, FROM_SOURCE, STEPS, VARIABLES


class FreshCopy(Installation):
    def test_QuickStartAndDemo_WorkForAUserWithoutRootsRights(self):
        self.give(self.root)
        source = self.folder / "source"
        shutil.copytree(SOURCES, source, symlinks=True, ignore=shutil.ignore_patterns("build", ".git", "__pycache__"))
        if IS_ROOT:
            result = self.run_as(False, "scripts/demo", source)
            self.expect(result, 1)
            self.assertRegex(result.stderr, r"^scripts/demo: \w+ may not write to .*/source/build; ")
        for path in [source, *source.rglob("*")]:
            self.give(path)

        (source / "counter.c").write_text(HOST)
        result = self.run_as(False, BUILD_COMMANDS + INSTALL + COMPILE_AND_RUN + QUIT, source)
        self.expect(result, 0)
        self.assertIn("\nsum: 2\n", result.stdout)
        self.wait_until(lambda: not self.servers())

        self.follow_tutorial(source)

        result = self.run_as(False, "scripts/demo", source)
        self.expect(result, 0)
        self.assertRegex(result.stdout, r"\ndigest: (\w{32})\nmd5sum: \1\n$")

    def follow_tutorial(self, source):
        """Its last step needs the source, and the program of its second step."""
        self.expect(self.run_as(False, FROM_SOURCE + VARIABLES + FOLDER, source), 0)
        (self.home / "tutorial/greeter.c").write_text(FILES["greeter.c"])
        compile_program = STEPS[0].content.splitlines()[0]
        self.expect(self.run_as(False, VARIABLES + compile_program, self.home / "tutorial"), 0)
        (source / "server/classes/Greeter.cpp").write_text(FILES["server/classes/Greeter.cpp"])
        self.expect(self.run_as(False, BUILD_AGAIN, source), 0)
        result = self.run_as(False, VARIABLES + CODE.content, source)
        self.expect(result, 0)
        self.assertEqual(result.stdout.splitlines(), CODE.expected)
        self.expect(self.run_as(False, VARIABLES + STEPS[-1].content, source), 0)
        self.wait_until(lambda: not self.servers())
