"""Runs README.md's quick start and scripts/demo in a new copy of the source, where everything is built again."""
import shutil

from installation import IS_ROOT, SOURCES, Installation
from quick_start import BUILD_COMMANDS, COMPILE_AND_RUN, HOST, INSTALL, QUIT


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

        result = self.run_as(False, "scripts/demo", source)
        self.expect(result, 0)
        self.assertRegex(result.stdout, r"\ndigest: (\w{32})\nmd5sum: \1\n$")
