"""Reads README.md's quick start from the page, so that tests run it word by word."""
import re

from installation import SOURCES

README = (SOURCES / "README.md").read_text()


def blocks(kind):
    return re.findall(rf"^```{kind}\n(.*?)^```$", README, re.MULTILINE | re.DOTALL)


BUILD_COMMANDS, INSTALL, COMPILE_AND_RUN, QUIT = blocks("sh")
HOST, = blocks("c")
SERVER_IS_MISSING, = blocks("text")
SET_ROOT = INSTALL.splitlines()[0] + "\n"
