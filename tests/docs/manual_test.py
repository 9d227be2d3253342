"""Checks the manual pages and the API pages: complete, without warnings, and with examples that run."""
import os
import re
import shutil
import subprocess
from pathlib import Path

from installation import SOURCES, Installation

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
SCRIPT = SOURCES / "scripts/manual-pages"
TOOL = BUILD / "tools/dovrel"
HEADER = (SOURCES / "include/dovrel/pos.h").read_text()
# Everything between the comments, so that this does not depend on how the script reads them.
CODE = re.sub(r"/\*.*?\*/", "", HEADER, flags=re.DOTALL)
FUNCTIONS = {name: re.findall(r"(\w+)(?=,|$)", "" if parameters == "void" else parameters)
             for name, parameters in re.findall(r"POS_EXPORT \w+ (\w+)\(([^)]*)\)", CODE)}
FILES = ["dovrel-properties.5", "dovrel-recording.5", "dovrel-texts.5", "dovrel.1", "dovrel.7", "merrowd.conf.5"]
# Pages of the system.
OTHER_PAGES = {"dlopen(3)"}


class Documentation(Installation):
    """The pages are made anew in a folder of the test."""

    def needs(self, *programs):
        missing = [program for program in programs if shutil.which(program) is None]
        if missing:
            print(f"manual_test: Skipped\nnot installed: {' '.join(missing)}")
            self.skipTest("a program is missing")

    def make_pages(self, *options):
        return subprocess.run([SCRIPT, "--date", "2026-11-22", "--tool", TOOL, *options, self.folder / "man"],
                              capture_output=True, text=True, check=False)

    def pages(self):
        self.needs("go-md2man", "man", "mandoc")
        self.expect(self.make_pages(), 0, "")
        return {page.name: page for page in (self.folder / "man").glob("man*/*")}

    def shown(self, page):
        """Returns the page as a reader sees it, with its lines joined."""
        environment = {**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "1000", "MANROFFOPT": "", "MAN_KEEP_FORMATTING": ""}
        result = subprocess.run(["man", "--warnings", "--no-hyphenation", "--no-justification", "-l", page], capture_output=True,
                                text=True, env=environment, check=False)
        self.expect(result, 0)
        self.assertEqual(result.stderr, "", page)
        return result.stdout

    def test_Pages_AreThoseOfTheFunctionsAndFiles(self):
        self.assertEqual(len(FUNCTIONS), 13)
        self.assertEqual(sorted(self.pages()), sorted([f"{name}.3" for name in FUNCTIONS] + FILES))

    def test_PageOfTheTool_NamesEverySubcommandOptionAndExample(self):
        shown = " ".join(self.shown(self.pages()["dovrel.1"]).split())
        pending = [[]]
        while pending:
            words = pending.pop()
            about = subprocess.run([TOOL, *words, "--help"], capture_output=True, text=True, check=True).stdout
            subcommands = about.split("\nSubcommands:\n")[1].split("\n\n")[0] if "\nSubcommands:\n" in about else ""
            found = re.findall(r"^  (\w[\w-]*) ", subcommands, re.MULTILINE)
            pending += [[*words, name] for name in found]
            if not words:
                continue
            self.assertIn(f"dovrel {' '.join(words)}", shown)
            self.assertIn(" ".join(about.split("\nUsage: ")[0].split()), shown, words)
            for option in re.findall(r"^  (?:-\w,)?(--[\w-]+)", about, re.MULTILINE):
                if found and option == "--help":
                    continue
                self.assertIn(option, shown, words)
            for note in re.findall(r"\n\n(?!\w+:\n)(\w[^\n]*(?:\n\w[^\n]*)*)(?=\n\n)", about):
                self.assertIn(" ".join(note.split()), shown, words)
            for example in re.findall(r"^  (.*dovrel .*)$", about.split("\nExamples:\n")[1], re.MULTILINE):
                self.assertIn(" ".join(example.split()), shown)

    def test_PageOfTheTool_HasOnlyVariablesUnderEnvironment(self):
        shown = self.shown(self.pages()["dovrel.1"])
        environment = shown.split("\nENVIRONMENT\n")[1].split("\nSEE ALSO\n")[0]
        self.assertNotIn("--help", environment)
        for name in ("POS_SYSTEM_ROOT", "POS_ALERTS", "NO_COLOR"):
            self.assertIn(name, environment)
        self.assertIn("shows the options and examples of a subcommand", shown.split("\nSUBCOMMANDS\n")[0])

    def test_Pages_NameADocumentOnlyIfItHasNoPage(self):
        for page in self.pages().values():
            self.assertNotRegex(self.shown(page), r"(development-server|recordings)\.md")
        for name in ("merrowd.conf.5", "dovrel.7"):
            self.assertIn("dovrel-recording(5)", self.shown(self.pages()[name]).split("\nSEE ALSO\n")[0])
        self.assertIn("dovrel-recording(5)", self.shown(self.pages()["merrowd.conf.5"]).split("\nSEE ALSO\n")[1])

    def test_Pages_AreWithoutWarnings(self):
        for page in self.pages().values():
            result = subprocess.run(["mandoc", "-Tlint", "-W", "warning", page], capture_output=True, text=True, check=False)
            self.expect(result, 0, "")
            self.shown(page)

    def test_Pages_AreFoundByTheirNames(self):
        for name, page in self.pages().items():
            result = subprocess.run(["lexgrog", page], capture_output=True, text=True, check=False)
            self.expect(result, 0)
            self.assertRegex(result.stdout, rf': "{re.escape(name.rsplit(".", 1)[0])} - .{{10}}')

    def test_PageOfAFunction_NamesItsPrototypeParametersAndResults(self):
        pages = self.pages()
        for name, parameters in FUNCTIONS.items():
            shown = self.shown(pages[f"{name}.3"])
            prototype = re.search(rf"POS_EXPORT (\w+ {name}\([^)]*\));", CODE)[1]
            self.assertIn(re.sub(r"[\s]", "", prototype), re.sub(r"[\s]", "", shown), name)
            listed = shown.split("\nPARAMETERS\n")[1].split("\nRETURN VALUE\n")[0] if parameters else ""
            self.assertEqual(re.findall(r"^ {7}(\w+)(?: \(output\))?(?=$| {2})", listed, re.MULTILINE), parameters, name)
            results = shown.split("\nRETURN VALUE\n")[1].split("\nEXAMPLE\n")[0]
            documented = re.search(rf"((?:(?!\*/).)*?)\*/\s*POS_EXPORT \w+ {name}\(", HEADER[HEADER.rindex("/**", 0, HEADER.index(
                f"POS_EXPORT uint32_t {name}(")):], re.DOTALL)[1]
            for result in re.findall(r"@retval (\w+)", documented):
                self.assertRegex(results, rf"(?m)^ {{7}}{result}\b", name)

    def test_References_LeadToPagesThatExist(self):
        pages = self.pages()
        existing = {re.sub(r"\.(\d)$", r"(\1)", name) for name in pages} | OTHER_PAGES
        for name, page in pages.items():
            for reference in re.findall(r"[\w.-]+\([1-8]\)", self.shown(page)):
                self.assertIn(reference, existing, name)

    def test_ContractOfAllFunctions_IsInTheOverviewWordByWord(self):
        shown = re.sub(r"\s+", "", self.shown(self.pages()["dovrel.7"]))
        contract = re.match(r"/\*\n(.*?) \*/", HEADER, re.DOTALL)[1].split(" * Terms\n")[1]
        for line in contract.splitlines():
            words = re.sub(r"^ \* *(?:- |[A-Z][\w' ]+\. )?", "", line) if " * " in line else ""
            words = re.sub(r"\b(InitializePOS|TerminatePOS|pos[A-Z]\w+)\b", r"\1(3)", words).replace("`", "")
            self.assertIn(re.sub(r"\s+", "", words), shown, line)

    def test_Examples_CompileWithoutWarningsAndPrintWhatTheyShow(self):
        pages = self.pages()
        self.work = self.new_folder("work")
        self.expect(self.run_as(True, f'cmake --install "{BUILD}" --prefix "{self.root}"', self.work), 0)
        for name in [*(f"{function}.3" for function in FUNCTIONS), "dovrel.7"]:
            example = self.shown(pages[name]).split("\nEXAMPLE\n")[1]
            code, output = re.search(r"\n( {14}#include.*?\n {14}\}\n).*?It prints\n\n(.*?)\n\n?[A-Z]", example, re.DOTALL).groups()
            (self.work / "example.c").write_text(re.sub("(?m)^ {14}", "", code))
            expected = "".join(f"{line.strip()}\n" for line in output.strip().splitlines())
            self.expect(self.run_as(False, f"""
export POS_SYSTEM_ROOT="{self.root}" POS_ALERTS=log LD_LIBRARY_PATH="{self.root}/lib"
cc -std=c99 -pedantic -Wall -Wextra -Werror -I "{self.root}/include" example.c -L "{self.root}/lib" -ldovrel -o example
./example""", self.work), 0, expected)

    def test_InstallationWithTheConverter_ContainsThePages(self):
        self.needs("go-md2man")
        self.expect(self.run_as(True, f'cmake --build "{BUILD}" --target manual\n'
                                      f'cmake --install "{BUILD}" --prefix "{self.root}"', self.folder), 0)
        for page in [*(f"man3/{function}.3" for function in FUNCTIONS), "man7/dovrel.7", "man5/merrowd.conf.5", "man1/dovrel.1"]:
            self.assertTrue((self.root / "share/man" / page).exists(), page)

    def test_WithoutTheConverter_TheScriptNamesItAndMarkdownIsMadeAllTheSame(self):
        result = self.make_pages("--converter", "no-such-converter")
        self.assertEqual((result.returncode, result.stderr),
                         (1, "scripts/manual-pages: no-such-converter is not installed\n"))
        self.expect(self.make_pages("--converter", "no-such-converter", "--markdown"), 0, "")
        self.assertIn("# SYNOPSIS", (self.folder / "man/posCallMethod.3.md").read_text())

    def doxygen_warnings(self, headers):
        self.needs("doxygen")
        self.expect(self.make_pages("--markdown"), 0, "")
        values = {"documentation": self.folder, "PROJECT_SOURCE_DIR": headers, "PROJECT_VERSION": "1", "PROJECT_DESCRIPTION": ""}
        (self.folder / "markdown").symlink_to(self.folder / "man")
        settings = re.sub(r"@(\w+)@", lambda name: str(values[name[1]]), (SOURCES / "docs/Doxyfile.in").read_text())
        (self.folder / "Doxyfile").write_text(settings)
        self.expect(subprocess.run(["doxygen", "-q", self.folder / "Doxyfile"], capture_output=True, text=True, check=False), 0)
        return (self.folder / "api.warnings").read_text()

    def test_ApiPages_HaveNoWarningAndNameEveryFunction(self):
        self.assertEqual(self.doxygen_warnings(SOURCES), "")
        made = (self.folder / "api/pos_8h.html").read_text()
        for function in FUNCTIONS:
            self.assertIn(f">{function}<", made)

    def test_ApiPages_OfANameWithoutAComment_HaveAWarning(self):
        headers = self.folder / "include/dovrel"
        shutil.copytree(SOURCES / "include/dovrel", headers)
        source = (headers / "pos.hpp").read_text()
        (headers / "pos.hpp").write_text(source.replace("class View {\n  public:\n", "class View {\n  public:\n    int bare() const;\n"))
        self.assertIn("bare", self.doxygen_warnings(self.folder))
