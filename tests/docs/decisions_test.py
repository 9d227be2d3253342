"""Checks that all tests and code that docs/decisions.md names exist."""
import re
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
FOLDERS = ["InterProcessCommunication", "bundle", "client", "cmake", "fuzz", "include", "macho", "platform", "portability",
           "scripts", "serialization", "server", "settings", "tests", "tools", "ui"]
KINDS = {".h", ".cpp", ".mm", ".py", ".txt", ".cmake", ""}


def texts():
    return [path.read_text(errors="replace") for folder in FOLDERS for path in (SOURCES / folder).rglob("*")
            if path.is_file() and path.suffix in KINDS and ".corpus" not in str(path) and "__pycache__" not in str(path)]


class Decisions(unittest.TestCase):
    PAGE = (SOURCES / "docs/decisions.md").read_text()
    CODE = "\n".join(texts())
    NAMES = set(re.findall(r"`([A-Za-z_][A-Za-z0-9_:./]*)`", PAGE))

    def test_EveryNamedTest_Exists(self):
        tests = {".".join(found) for found in re.findall(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", self.CODE)}
        tests |= {"client." + name for name in re.findall(r"NAME client\.(\w+)", self.CODE)}
        named = {name for name in self.NAMES if re.fullmatch(r"\w+\.[A-Z]\w*", name)}
        self.assertGreater(len(named), 100)
        self.assertEqual(sorted(named - tests), [])

    def test_EveryNamedPieceOfCode_Exists(self):
        files = {path.name for folder in FOLDERS for path in (SOURCES / folder).rglob("*")}
        words = {re.split("::|/", name.rstrip("/"))[-1] for name in self.NAMES if not re.fullmatch(r"\w+\.[A-Z]\w*", name)}
        self.assertEqual(sorted(word for word in words if word not in files and word not in self.CODE), [])

    def test_EveryTitle_IsThereOnce(self):
        titles = re.findall(r"^#+ (.+)$", self.PAGE, re.MULTILINE)
        self.assertEqual(len(titles), len(set(titles)))


if __name__ == "__main__":
    unittest.main()
