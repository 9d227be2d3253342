"""Compares portability/PLATFORM_CALLS.md and portability/DIFFERENCES.md with the code of portability/.

The paths of headers, files and tests come from the rows, so that only the rows change if a folder moves."""
import os
import re
import subprocess
import tempfile
import unittest
from collections import Counter
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
PORTABILITY = SOURCES / "portability"
HEADERS = PORTABILITY / "include"
TESTS = SOURCES / "tests/portability"
CALLS = (PORTABILITY / "PLATFORM_CALLS.md").read_text()
DIFFERENCES = (PORTABILITY / "DIFFERENCES.md").read_text()

# gcc, because it can list the functions of a translation unit (-aux-info). The
# definitions match cmake/GNUstep.cmake.
COMPILER = ["gcc", "-x", "objective-c", "-fsyntax-only", "-w", "-fexceptions", "-fobjc-exceptions",
            "-fconstant-string-class=NSConstantString", "-DGNUSTEP", "-DGNUSTEP_BASE_LIBRARY=1", "-DGNU_GUI_LIBRARY=1",
            "-DGNU_RUNTIME=1", "-D_NATIVE_OBJC_EXCEPTIONS",
            "-isystem", os.environ.get("GNUSTEP_INCLUDE_DIR", "/usr/include/GNUstep")]
FUNCTION = re.compile(r"^/\* (?P<file>\S+?):\d+:\w+ \*/ .*?(?P<name>\w+) \((?!\*)")
MACRO = re.compile(r"^[ \t]*#[ \t]*define[ \t]+(\w+)\(", re.MULTILINE)
CLASS = re.compile(r"^@interface (\w+)\b(?! *\()", re.MULTILINE)
METHOD = re.compile(r"^([-+]) *\([^)]*\) *([^;]*);", re.MULTILINE)
# Our class with an alias for the platform's name, so that it cannot clash with a class of the host.
ALIAS = re.compile(r"^@compatibility_alias (\w+) (\w+);", re.MULTILINE)


def words(path):
    return set(re.findall(r"\w+", path.read_text()))


def declared_functions(folder):
    """Returns the functions that the headers below a folder declare: name -> header, relative to the folder."""
    headers = {header: str(header.relative_to(folder)) for header in sorted(folder.rglob("*.h"))}
    includes = "".join(f"#include <{name}>\n" for name in headers.values())
    with tempfile.NamedTemporaryFile("r") as listing:
        subprocess.run([*COMPILER, f"-I{folder}", "-aux-info", listing.name, "-"], input=includes, text=True, check=True)
        declarations = filter(None, map(FUNCTION.match, Path(listing.name).read_text().splitlines()))
        return {found["name"]: headers[Path(found["file"])] for found in declarations if Path(found["file"]) in headers}


def selector(declaration):
    return "".join(re.findall(r"\w+:", declaration)) or declaration.strip()


def declared_methods(folder):
    """Returns the Objective-C classes that the headers below a folder declare, and their methods:
    platform's name -> (header, ["-[name method]", ...])."""
    found = {}
    for header in sorted(folder.rglob("*.h")):
        text = header.read_text()
        aliases = {own: name for name, own in ALIAS.findall(text)}
        for own in CLASS.findall(text):
            name = aliases.get(own, own)
            body = re.search(rf"^@interface {own}\b(?! *\().*?^@end", text, re.MULTILINE | re.DOTALL)[0]
            found[name] = (str(header.relative_to(folder)),
                           [f"{sign}[{name} {selector(rest)}]" for sign, rest in METHOD.findall(body)])
    return found


def declared_names(page, folder):
    """Returns the functions, function-like macros and classes that the headers below a folder declare, as above. If the
    page has a row for any method of a class, the methods replace the class."""
    found = declared_functions(folder)
    for header in sorted(folder.rglob("*.h")):
        found.update(dict.fromkeys(MACRO.findall(header.read_text()), str(header.relative_to(folder))))
    calls = {row.call for row in rows(page)}
    for name, (header, methods) in declared_methods(folder).items():
        found.update(dict.fromkeys([name] if calls.isdisjoint(methods) else methods, header))
    return found


def holds(path, row):
    """Returns true if the file contains the row's call: all parts of a method's name, or the name, or our class's name."""
    if row.call[0] in "-+":
        return words(path) >= set(re.findall(r"\w+", row.call.split()[1]))
    header = HEADERS / row.header
    own = dict(ALIAS.findall(header.read_text())).get(row.call) if header.exists() else None
    return not words(path).isdisjoint({row.call, own})


class Row:
    """call | header | file | status | contract tests"""

    def __init__(self, line):
        self.line = line
        cells = [cell.strip() for cell in line.strip("| ").split("|")]
        self.call, self.header, self.file, self.status, tests = cells
        self.call = self.call.strip("`")
        self.tests = tests.split(", ")


def rows(page):
    return [Row(line) for line in page.splitlines() if line.startswith("| `")]


def groups(page):
    """Returns (title, first number, last number) of each group of differences that the head of the page lists."""
    head = " ".join(page.split("\n## ")[0].split())
    return [(title, int(first), int(last))
            for first, last, title in re.findall(r"(\d+) to (\d+) ([A-Za-z ]+?)[,.]", head)]


def numbers(page):
    """Returns the numbers of the entries by the title of their group, in the order of the page."""
    return {section.split("\n")[0]: [int(number) for number in re.findall(r"^(\d+)\. \*\*", section, re.MULTILINE)]
            for section in page.split("\n## ")[1:]}


def retired(section):
    """Returns the numbers in sentences such as "Number 7 is no longer used", "Numbers 7, 8 and 9 are no longer used"."""
    text = " ".join(section.split())
    return {int(number) for sentence in re.findall(r"Numbers? ([\d, and]+) (?:is|are) no longer used", text)
            for number in re.findall(r"\d+", sentence)}


def missing_and_repeated_rows(page, declared):
    count = Counter(row.call for row in rows(page))
    return ([f"no row: {name} ({header})" for name, header in declared.items() if not count[name]] +
            [f"{number} rows: {name}" for name, number in count.items() if number > 1])


def wrong_headers(page, declared):
    """Returns the rows with a wrong header. The row of a call that no header of ours declares must not name one of them."""
    ours = set(declared.values())
    return [row.line for row in rows(page)
            if (row.header in ours if row.call not in declared else row.header != declared[row.call])]


def wrong_statuses(page, differences):
    known = {str(number) for group in numbers(differences).values() for number in group}
    calls = {row.call for row in rows(page)}
    problems = []
    for row in rows(page):
        parts = re.fullmatch(r"part: (.+)", row.status)
        named = parts[1].split(", ") if parts else []
        good = row.status == "full" or named and all(
            part in known or part.startswith("as `") and part[4:-1] in calls for part in named)
        if not good:
            problems.append(row.line)
    return problems


def unnamed_differences(page, differences):
    """Returns the numbers of entries that no row names."""
    named = {int(number) for row in rows(page) for number in re.findall(r"\d+", row.status)}
    return sorted({number for group in numbers(differences).values() for number in group} - named)


def wrong_numbers(page):
    problems = []
    ranges = {title.casefold(): (first, last) for title, first, last in groups(page)}
    for section in page.split("\n## ")[1:]:
        title = section.split("\n")[0]
        found = numbers(page)[title]
        if title.casefold() not in ranges:
            problems.append(f"{title}: the head of the page has no such group")
            continue
        first, last = ranges[title.casefold()]
        if found != sorted(set(found)):
            problems.append(f"{title}: not ascending: {found}")
        problems += [f"{title}: {number} is outside {first} to {last}" for number in found if not first <= number <= last]
        holes = set(range(first, max(found, default=first))) - set(found) - retired(section)
        problems += [f"{title}: {number} is missing without a word" for number in sorted(holes)]
        problems += [f"{title}: {number} is said to be no longer used" for number in retired(section) & set(found)]
    missing = set(ranges) - {title.casefold() for title in numbers(page)}
    return problems + [f"no group of differences: {title}" for title in missing]


class PlatformCalls(unittest.TestCase):
    def test_EveryDeclaredFunctionMacroAndClass_HasExactlyOneRow(self):
        declared = declared_names(CALLS, HEADERS)
        self.assertGreater(len(declared), 50)
        self.assertEqual(missing_and_repeated_rows(CALLS, declared), [])

    def test_EveryRow_NamesTheHeaderThatDeclaresItsCall(self):
        self.assertEqual(wrong_headers(CALLS, declared_names(CALLS, HEADERS)), [])

    def test_EveryRow_NamesAFileThatHoldsItsCall(self):
        self.assertEqual([row.line for row in rows(CALLS) if not holds(PORTABILITY / row.file, row)], [])

    def test_EveryRow_NamesAContractTestThatUsesItsCall(self):
        self.assertEqual([row.line for row in rows(CALLS)
                          if not any(holds(TESTS / test, row) for test in row.tests)], [])

    def test_EveryStatus_IsFullOrNamesEntriesThatExist(self):
        self.assertEqual(wrong_statuses(CALLS, DIFFERENCES), [])


class Differences(unittest.TestCase):
    def test_EveryEntry_IsNamedByARow(self):
        self.assertEqual(unnamed_differences(CALLS, DIFFERENCES), [])

    def test_Numbers_AscendInTheRangeOfTheirGroupWithoutUnexplainedHoles(self):
        self.assertEqual(len(groups(DIFFERENCES)), len(numbers(DIFFERENCES)))
        self.assertEqual(wrong_numbers(DIFFERENCES), [])


class DamagedPages(unittest.TestCase):
    """Checks that the functions above find faults."""

    PAGE = "| `One` | A.h | a.cpp | full | t.cpp |\n| `Two` | A.h | a.cpp | part: 2, as `One` | t.cpp |\n"
    DECLARED = {"One": "A.h", "Two": "A.h"}
    NUMBERED = ("1 to 4 first things, 5 to 9 other things.\n\n## First things\n\n1. **A.** x\n2. **B.** x\n\n"
                "## Other things\n\nNumbers 5 and 6 are\nno longer used.\n\n7. **C.** x\n")

    def test_GoodPages_HaveNoProblem(self):
        self.assertEqual(missing_and_repeated_rows(self.PAGE, self.DECLARED), [])
        self.assertEqual(wrong_headers(self.PAGE, self.DECLARED), [])
        self.assertEqual(wrong_statuses(self.PAGE, self.NUMBERED), [])
        self.assertEqual(wrong_numbers(self.NUMBERED), [])

    def test_LostAndDoubledRows_AreFound(self):
        self.assertEqual(missing_and_repeated_rows(self.PAGE, {**self.DECLARED, "Three": "B.h"}),
                         ["no row: Three (B.h)"])
        self.assertEqual(missing_and_repeated_rows(self.PAGE + self.PAGE.splitlines()[0], self.DECLARED),
                         ["2 rows: One"])

    def test_WrongHeaders_AreFound(self):
        self.assertEqual(len(wrong_headers(self.PAGE, {"One": "B.h", "Two": "A.h"})), 1)
        self.assertEqual(len(wrong_headers(self.PAGE, {"One": "A.h"})), 1)

    def test_StatusesWithoutEntries_AreFound(self):
        for status in ("part: 3", "part: as `Three`", "part", "almost"):
            page = self.PAGE.replace("full", status)
            self.assertEqual(wrong_statuses(page, self.NUMBERED), [page.splitlines()[0]], status)

    def test_EntriesThatNoRowNames_AreFound(self):
        self.assertEqual(unnamed_differences(self.PAGE, self.NUMBERED), [1, 7])

    def test_HolesRepeatedAndStrayNumbers_AreFound(self):
        for change in (("2. **B", "3. **B"), ("2. **B", "1. **B"), ("2. **B", "5. **B"), ("5 and 6 are", "5 is"),
                       ("## First", "## Third"), ("7. **C", "6. **C")):
            self.assertNotEqual(wrong_numbers(self.NUMBERED.replace(*change)), [], change)

    def test_DeclarationsOfEveryKind_AreFound(self):
        with tempfile.TemporaryDirectory() as folder:
            header = Path(folder, "Kinds.h")
            header.write_text("typedef void *(*Procedure)(void);\nextern int Plain(int a, Procedure b);\n"
                              "static inline char *Inline(void) { return 0; }\nvoid (*Returning(int))(void);\n"
                              "#define Like(x) (x)\n#define CONSTANT 1\n"
                              "@interface Known\n- (void)run;\n@end\n@interface Known (Category)\n- (int)more;\n@end\n"
                              "@interface Own\n+ (Own *)with:(int)a and:(int)b;\n- (int)count;\n@end\n"
                              "@compatibility_alias Platforms Own;\n")
            others = ["Plain", "Inline", "Returning", "Like", "Known"]
            self.assertEqual(declared_names("", Path(folder)), dict.fromkeys([*others, "Platforms"], "Kinds.h"))
            page = "| `-[Platforms count]` | Kinds.h | a.mm | full | t.mm |"
            self.assertEqual(declared_names(page, Path(folder)), dict.fromkeys(
                [*others, "+[Platforms with:and:]", "-[Platforms count]"], "Kinds.h"))


if __name__ == "__main__":
    unittest.main()
