"""The files of a tree: those that git tracks or would add, as long as they are there. A copy without git: all but builds."""
import re
import subprocess
from pathlib import PurePosixPath

BUILT = {".git", "__pycache__", "build"}
SOURCE_SUFFIXES = {".c", ".cpp", ".h", ".m", ".mm"}
SHELL_LINE = re.compile(rb"#!\s*/\S*?(env\s+)?(ba|da)?sh\b")


class Tree:
    def __init__(self, root):
        self.root = root
        listed = subprocess.run(["git", "-C", root, "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], capture_output=True, text=True, check=False)
        if listed.returncode:
            names = [str(path.relative_to(root)) for path in root.rglob("*") if BUILT.isdisjoint(path.relative_to(root).parts)]
        else:
            names = [name for name in listed.stdout.split("\0") if name]
        paths = map(PurePosixPath, names)
        self.files = sorted({path for path in paths if (root / path).is_file()})

    def read(self, path):
        return (self.root / path).read_text(errors="replace")

    def sources(self):
        """The files in C, C++, Objective-C and Objective-C++."""
        return [path for path in self.files if path.suffix in SOURCE_SUFFIXES]

    def headers(self):
        return [path for path in self.files if path.suffix == ".h"]

    def shell_scripts(self):
        """The files whose first line names a shell."""
        return [path for path in self.files if path.suffix in {"", ".sh"} and SHELL_LINE.match(self.first_bytes(path))]

    def documents(self):
        return [path for path in self.files if path.suffix == ".md"]

    def first_bytes(self, path):
        with open(self.root / path, "rb") as file:
            return file.read(80)

    def run(self, command, paths):
        """Runs a program on files of the tree, in its folder."""
        return subprocess.run([*command, *map(str, paths)], cwd=self.root, capture_output=True, text=True, check=False)
