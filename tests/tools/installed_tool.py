"""The command-line tool in an installation of its own."""
import json
import os
import pty
import subprocess
from pathlib import Path

from installation import IS_ROOT, USER, Installation

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
TOOL = BUILD / "tools/dovrel"


class InstalledTool(Installation):
    """Installs as root, if the tests run as root, and runs the tool as a user who is not root."""

    def setUp(self):
        super().setUp()
        self.expect(self.run_as(True, f'umask 022\ncmake --install "{BUILD}" --prefix "{self.root}"', self.folder), 0)

    def command(self, arguments, setup=""):
        return f'export POS_SYSTEM_ROOT="{self.root}" POS_ALERTS=log\n{setup}\n"{self.root}/bin/dovrel" {arguments}'

    def dovrel(self, arguments, setup="", as_root=False):
        """Runs the tool, after the shell commands in `setup`."""
        return self.run_as(as_root, self.command(arguments, setup), self.folder)

    def output(self, arguments, setup=""):
        """The standard output of the tool, which must succeed and write nothing to standard error."""
        result = self.dovrel(arguments, setup)
        self.expect(result, 0)
        self.assertEqual(result.stderr, "")
        return result.stdout

    def json(self, arguments):
        return json.loads(self.output(arguments))

    def assert_fails(self, arguments, message, status=1, setup=""):
        """The last line of standard error is the message, after the name of the tool."""
        result = self.dovrel(arguments, setup)
        self.expect(result, status)
        self.assertRegex(result.stderr.splitlines()[-1], f"^dovrel: {message}")

    def on_terminal(self, arguments, setup=""):
        """Runs the tool with a terminal as its input and outputs. Returns what appears there."""
        main, terminal = pty.openpty()
        rights = {"user": USER, "group": USER, "extra_groups": []} if IS_ROOT else {}
        variables = {"HOME": str(self.home), "PATH": os.environ["PATH"], "XDG_RUNTIME_DIR": str(self.runtime), "TERM": "xterm"}
        with subprocess.Popen(["bash", "-ec", self.command(arguments, setup)], stdin=terminal, stdout=terminal,
                              stderr=terminal, env=variables, start_new_session=True, cwd=self.folder, **rights):
            os.close(terminal)
            shown = b""
            try:
                while read := os.read(main, 65536):
                    shown += read
            except OSError:  # the other end of the terminal was closed
                pass
        os.close(main)
        return shown.decode(errors="replace").replace("\r\n", "\n")
