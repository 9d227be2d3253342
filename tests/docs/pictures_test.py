"""Checks that scripts/pictures still makes the pictures that the documents show."""
import os
import re
import shutil
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

from installation import SOURCES

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
SCRIPT = SOURCES / "scripts/pictures"
SHOWN = SOURCES / "docs/pictures"
LARGEST_FILE = 40_000


def shown_files():
    return [path for path in SHOWN.iterdir() if path.suffix in {".png", ".svg"}]


def size(picture):
    """Returns width and height of a picture."""
    if picture.suffix == ".svg":
        root = ElementTree.parse(picture).getroot()
        return int(root.get("width")), int(root.get("height"))
    data = picture.read_bytes()
    if not data.startswith(b"\x89PNG\r\n\x1a\n"):
        raise ValueError(f"{picture} is not a PNG file")
    return struct.unpack(">II", data[16:24])


class Pictures(unittest.TestCase):
    def test_Script_MakesThePicturesOfTheDocuments(self):
        missing = [program for program in ("Xvfb", "openbox", "xdotool", "import") if shutil.which(program) is None]
        if missing:
            print(f"pictures_test: Skipped\nnot installed: {' '.join(missing)}")
            self.skipTest("a program is missing")
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run([SCRIPT, "--build", BUILD, "--output", folder], capture_output=True, text=True, check=False)
            self.assertEqual(result.returncode, 0, result.stderr)
            made = {path.name: size(path) for path in Path(folder).iterdir()}
            doctor = " ".join(ElementTree.parse(f"{folder}/doctor.svg").getroot().itertext())
        self.assertEqual(sorted(made), sorted(path.name for path in shown_files()))
        self.assertRegex(doctor, r"handshake +answered in")
        self.assertNotIn("/tmp/tmp", doctor)
        for name, (width, height) in made.items():
            self.assertGreater(width, 300, name)
            self.assertGreater(height, 150, name)

    def test_Documents_ShowEveryPictureAndNoOther(self):
        pages = [*(SOURCES / "docs").glob("*.md"), SOURCES / "README.md"]
        shown = {name for page in pages for name in re.findall(r"!\[[^\]]+\]\((?:docs/)?pictures/([^)]+)\)", page.read_text())}
        self.assertEqual(sorted(shown), sorted(path.name for path in shown_files()))

    def test_Pictures_AreSmall(self):
        for picture in shown_files():
            self.assertLess(picture.stat().st_size, LARGEST_FILE, picture)

    def test_WithoutABuild_TheScriptFails(self):
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run([SCRIPT, "--build", folder, "--output", f"{folder}/pictures"], capture_output=True, text=True,
                                    check=False)
            self.assertEqual(result.returncode, 1)
            self.assertIn("scripts/pictures: ", result.stderr)
