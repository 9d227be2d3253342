"""Runs scripts/check on small trees with one fault each, and checks the help of scripts/test and scripts/fuzz."""
import json
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
REASONS = "scripts/checks/headers-without-test.txt"


def run(*command):
    return subprocess.run(list(map(str, command)), cwd=SOURCES, capture_output=True, text=True, check=False)


class Check(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name).resolve()
        subprocess.run(["git", "init", "--quiet", self.tree], check=True)

    def write(self, path, text):
        place = self.tree / path
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text(text)

    def expect(self, name, *faults):
        """Expects the check to find exactly these faults. Each is a pattern for a whole line."""
        result = run("scripts/check", "-C", self.tree, name)
        lines = result.stdout.splitlines()
        shown = result.stdout + result.stderr
        self.assertRegex(lines[0], rf"^{'FAIL' if faults else 'ok  '} {name} \(\d+ s\)$", shown)
        self.assertEqual(len(lines) - 2, len(faults), shown)
        for line, fault in zip(lines[1:-1], faults):
            self.assertRegex(line, f"^     {fault}$")
        self.assertEqual(lines[-1], f"{0 if faults else 1} passed, {1 if faults else 0} failed, 0 skipped")
        self.assertEqual(result.returncode, 1 if faults else 0, shown)

    def test_Formatting_AFileThatTheFormatterWouldChange_IsNamedWithItsFirstPlace(self):
        shutil.copy(SOURCES / ".clang-format", self.tree)
        self.write("good.cpp", "int good() {\n    return 1;\n}\n")
        self.expect("formatting")
        self.write("bad.mm", "int good = 1;\nint   bad=2;\n")
        self.expect("formatting", r"bad\.mm:2: not formatted \(\d places\); clang-format-14 -i bad\.mm does it")

    def test_Formatting_CommentsAndTheirTables_AreLeftAsTheyAre(self):
        shutil.copy(SOURCES / ".clang-format", self.tree)
        long_line = "one" + 60 * " two"
        for suffix in ("h", "mm"):
            self.write(f"table.{suffix}", f"//   a  1\n//   b  2\n// {long_line}\nint table = 0;\n")
        self.expect("formatting")

    def test_Formatting_FilesThatGitIgnores_AreNotAskedFor(self):
        self.write(".gitignore", "/build/\n")
        self.write("build/bad.cpp", "int   bad=2;\n")
        self.expect("formatting")

    def test_Shell_AVariableThatIsNotQuoted_IsNamed(self):
        self.write("good", '#!/bin/sh\nrm -f "$1"\n')
        self.write("text", "rm $1\n")
        self.expect("shell")
        self.write("tools/bad", "#!/usr/bin/env bash\nrm -f $1\n")
        self.expect("shell", r"tools/bad:2:7: note: Double quote .* \[SC2086\]")

    def test_Links_ToNothing_AreNamedWithTheirLine(self):
        self.write("docs/page.md", "# Page\n\n[up](../README.md), [folder](../docs), [itself](#page)\n[far](https://a.b/c)\n")
        self.write("README.md", "[page](docs/page.md#page)\n[page]\n\n[page]: docs/page.md\n")
        self.expect("links")
        self.write("README.md", "[a](docs/page.md)\n\nand [b](docs/none.md) ![c](none.png)\n\n"
                   "[d]: none.md\n[e](/docs/page.md)\n")
        self.expect("links", r"README\.md:3: the link docs/none\.md leads to nothing",
                    r"README\.md:3: the link none\.png leads to nothing",
                    r"README\.md:5: the link none\.md leads to nothing",
                    r"README\.md:6: the link /docs/page\.md is not relative")

    def test_TreeWithoutGit_IsCheckedWithoutItsBuilds(self):
        shutil.rmtree(self.tree / ".git")
        self.write("docs/page.md", "[gone](missing.md)\n")
        self.write("build/page.md", "[gone](missing.md)\n")
        self.expect("links", r"docs/page\.md:1: .*missing\.md.*")

    def test_Links_ToAHeadingThatIsNotThere_AreNamed(self):
        headings = "# Of `code`, and more: twice!\n\n## Twice\n\n## Twice\n\n```sh\n# no heading\n```\n"
        self.write("page.md", headings)
        self.write("README.md", "[a](page.md#of-code-and-more-twice) [b](page.md#twice) [c](page.md#twice-1)\n")
        self.expect("links")
        self.write("README.md", "[a](page.md#thrice)\n[b](page.md#no-heading)\n")
        self.expect("links", r"README\.md:1: the link page\.md#thrice names a heading that page\.md does not have",
                    r"README\.md:2: the link page\.md#no-heading names .*")

    def test_Links_InCode_AreNoLinks(self):
        self.write("README.md", "`[a](none.md)`\n\n```c\nb[1](c);\n```\n")
        self.expect("links")

    def test_Headers_WithoutATestAndWithoutAReason_AreNamed(self):
        self.write("tests/Fixture.h", "")
        self.write("tests/here/TestedTest.mm", "")
        self.write("here/Tested.h", "")
        self.write("here/Excused.h", "")
        self.write("many/One.h", "")
        self.write("many/Other.h", "")
        self.write(REASONS, "# Reasons.\nExcused.h: covered by TestedTest\nmany/: declarations\n")
        self.expect("headers")
        self.write("here/New.h", "")
        self.expect("headers", f"here/New.h: there is no NewTest, and no reason in {REASONS}")

    def test_Headers_ALineOfTheListThatIsWrong_IsNamed(self):
        for name in ("A", "B", "C"):
            self.write(f"here/{name}.h", "")
        self.write("tests/TestedTest.cpp", "")
        self.write("here/Tested.h", "")
        self.write(REASONS, "B.h: covered by NoTest\nA.h: interface\nC.h: \nTested.h: it is not asked for\ngone/: nothing\n")
        self.expect("headers", f"{REASONS}:2: A.h is not in its place; .*", f"{REASONS}:3: C.h has no reason",
                    f"{REASONS}:1: there is no NoTest", f"{REASONS}:4: Tested.h is not a header without a test",
                    f"{REASONS}:5: gone/ is not a header without a test")

    def test_Readmes_AFolderWithoutOne_IsNamed(self):
        for page in ("one", "one/two", "fuzz", "server"):
            self.write(f"{page}/README.md", "# Page\n")
        self.write("one/two/three/code.cpp", "")
        self.write("fuzz/Target.corpus/seed", "")
        self.write(".ci/run", "")
        self.expect("readmes")
        self.write("one/other/code.cpp", "")
        self.write("alone/code.cpp", "")
        self.expect("readmes", r"alone: there is no README\.md", r"one/other: there is no README\.md")

    def test_Readmes_APageThatIsTooLong_IsNamed(self):
        self.write("one/README.md", 15 * "line\n")
        self.write("benchmarks/README.md", 200 * "line\n")
        self.expect("readmes")
        self.write("one/README.md", 16 * "line\n")
        self.expect("readmes", r"one/README\.md: it has 16 lines, more than 15")

    def write_contract_tests(self):
        self.write("portability/include/Carbon/Carbon.h", "")
        self.write("tests/portability/CMakeLists.txt",
                   "# These include platform headers only.\n"
                   "dovrel_test(contract\n    SOURCES ATest.cpp\n    DEPENDS portability)\n"
                   "# What is the layer's own.\ndovrel_test(own SOURCES OwnTest.cpp)\n")
        self.write("tests/portability/OwnTest.cpp", '#include "events/Own.h"\n')

    def test_Contracts_AHeaderOfTheLayer_IsNamed(self):
        self.write_contract_tests()
        self.write("tests/portability/ATest.cpp", '#include <Carbon/Carbon.h>\n#include <gtest/gtest.h>\n'
                   '#include <unistd.h>\n#include <string>\n#include "Fixture.h"\n')
        self.write("tests/portability/Fixture.h", "#include <vector>\n")
        self.expect("contracts")
        self.write("tests/portability/ATest.cpp", '#include <string>\n\n#include "events/Own.h"\n#include <sys/prctl.h>\n')
        self.expect("contracts", r"tests/portability/ATest\.cpp:3: events/Own\.h is not a header of the platform",
                    r"tests/portability/ATest\.cpp:4: sys/prctl\.h is not a header of the platform")

    def test_Contracts_AHeaderOfTheLayerBehindOneOfTheTests_IsNamed(self):
        self.write_contract_tests()
        self.write("tests/portability/ATest.cpp", '#include "tests/support/Fixture.h"\n')
        self.write("tests/support/Fixture.h", '#pragma once\n#include "events/Own.h"\n')
        self.expect("contracts", r"tests/support/Fixture\.h:2: events/Own\.h is not a header of the platform")

    def test_Contracts_WithoutAnyContractTest_Fail(self):
        self.write("tests/portability/CMakeLists.txt", "dovrel_test(own SOURCES OwnTest.cpp)\n")
        self.expect("contracts", "tests/portability: no build file says which tests include platform headers only")

    def write_compiled(self, path, text):
        self.write(path, text)
        command = {"directory": str(self.tree), "file": str(self.tree / path), "command": f"g++ -c {path}"}
        self.write("build/dev/compile_commands.json", json.dumps([command]))

    def test_Tidy_UseAfterMove_IsNamed(self):
        shutil.copy(SOURCES / ".clang-tidy", self.tree)
        code = "#include <string>\n#include <utility>\nvoid take(std::string text);\nvoid use(std::string text) {\n"
        self.write_compiled("here/code.cpp", code + "    take(std::move(text));\n}\n")
        self.expect("tidy")
        self.write_compiled("here/code.cpp", code + "    take(std::move(text));\n    take(text);\n}\n")
        self.expect("tidy", r"here/code\.cpp:6: error: 'text' used after it was moved \[bugprone-use-after-move.*\]")

    def test_Tidy_WithoutAnySource_Fails(self):
        self.write("build/dev/compile_commands.json", "[]")
        self.expect("tidy", r"build/dev/compile_commands\.json names no source of the library")


class Help(unittest.TestCase):
    def test_OfEveryCommand_EndsWithZero(self):
        for command in ("benchmark", "check", "check-bundle", "count-tests", "demo", "faults", "fuzz", "in-i386-root", "in-root", "setup",
                        "soak", "test"):
            for word in ("-h", "--help"):
                result = run(f"scripts/{command}", word)
                self.assertEqual((result.returncode, result.stderr), (0, ""), command)
                self.assertRegex(result.stdout, rf"^usage: scripts/{command}\s")

    def test_OfTest_NamesEveryTestPreset(self):
        listed = run("cmake", "--list-presets=test").stdout
        presets = set(re.findall(r'^ +"(.+?)"', listed, re.MULTILINE))
        words = set(re.findall(r"^  ([a-z][a-z0-9-]*)  ", run("scripts/test", "--help").stdout, re.MULTILINE))
        self.assertIn("dev", presets)
        self.assertEqual(words - presets, {"all", "ci", "check", "i386", "benchmarks"})
        self.assertEqual(presets - words, {"mac", "debug"})  # for another system, and for debuggers

    def test_OfFuzz_NamesEveryTarget(self):
        targets = set(re.findall(r"dovrel_fuzz_target\((\w+)", (SOURCES / "fuzz/CMakeLists.txt").read_text()))
        targets.discard("target")
        listed = set(re.findall(r"^  (\w+)$", run("scripts/fuzz", "--help").stdout, re.MULTILINE))
        self.assertEqual(listed, targets)

    def test_WrongArguments_EndWithTwoAndTheUsage(self):
        for command, *arguments in (["test", "--unknown"], ["test", "dev", "nonsense"], ["check", "nonsense"],
                                    ["fuzz", "nonsense"], ["fuzz", "all", "0"], ["fuzz", "all", "1", "2"],
                                    ["check-bundle", "--unknown"], ["check-bundle", "one", "two"], ["count-tests"],
                                    ["demo", "--unknown"], ["demo", "one", "two"], ["in-i386-root"],
                                    ["in-i386-root", "--unknown"], ["in-root"], ["in-root", "nonsense", "true"],
                                    ["setup", "nonsense"]):
            result = run(f"scripts/{command}", *arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""), command)
            self.assertRegex(result.stderr, rf"^usage: scripts/{command}\s")


if __name__ == "__main__":
    unittest.main()
