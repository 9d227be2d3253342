"""Installs this build as a distribution does, with a system root that is chosen when the library is configured."""
import fcntl
import re
import shutil

from configured_build import BUILD, configured_build
from installation import SOURCES, Installation

# The path of the root "lib/dovrel" below this prefix is in the products.
PREFIX = BUILD / "tests/installation/prefix"
HOST = re.search(r"^```c\n(.*?)^```$", (SOURCES / "README.md").read_text(), re.MULTILINE | re.DOTALL)[1]


class Configured(Installation):
    """Installs in the prefix, which only one test at a time can do."""

    def setUp(self):
        lock = open(f"{PREFIX}.lock", "w")
        self.addCleanup(lock.close)
        fcntl.flock(lock, fcntl.LOCK_EX)
        super().setUp()
        shutil.rmtree(PREFIX, ignore_errors=True)
        self.addCleanup(shutil.rmtree, PREFIX, ignore_errors=True)
        self.addCleanup(self.end_servers)

    def make_root(self):
        """The installation makes it."""

    def configure(self, name, options):
        self.configured = configured_build(self, name, f'-DCMAKE_INSTALL_PREFIX="{PREFIX}" {options}', "local")

    def install(self):
        self.run_expecting_success(f'cmake --install "{self.configured}"')

    def uninstall(self):
        return self.run_as(True, f'cmake --build "{self.configured}" --target uninstall', self.folder)

    def run_expecting_success(self, commands):
        result = self.run_as(True, commands, self.folder)
        self.expect(result, 0)
        return result.stdout

    @staticmethod
    def files():
        return sorted(str(path.relative_to(PREFIX)) for path in PREFIX.rglob("*") if not path.is_dir())


class ConfiguredRoot(Configured):
    def setUp(self):
        super().setUp()
        self.configure("with-root", "-DDOVREL_SYSTEM_ROOT=lib/dovrel")
        self.install()
        # So that the endpoints are removed with the root.
        (self.root / "tmp").mkdir()
        (self.folder / "counter.c").write_text(HOST)

    @property
    def root(self):
        return PREFIX / "lib/dovrel"

    def run_host(self, setup="", host=HOST):
        (self.folder / "counter.c").write_text(host)
        return self.run_as(True, f'{setup}\nexport PKG_CONFIG_PATH="{PREFIX}/lib/pkgconfig"\n'
                           "cc -std=c99 counter.c $(pkg-config --cflags --libs dovrel) -o counter\n"
                           f'LD_LIBRARY_PATH="{PREFIX}/lib" ./counter', self.folder)

    def test_HostWithoutAVariable_FindsTheServer(self):
        self.expect(self.run_host(), 0, "sum: 2\n")
        self.assertEqual(len(self.servers()), 1)
        self.run_expecting_success(f'"{PREFIX}/bin/dovrel" server stop')
        self.assertEqual(self.servers(), [])

    def test_HostWithAVariable_FindsTheRootOfTheVariable(self):
        result = self.run_host(f'export POS_SYSTEM_ROOT="{self.folder}"')
        self.expect(result, 1)
        self.assertIn("Could not find Merrowd server application!", result.stdout)
        self.assertEqual(self.servers(), [])

    def test_Files_AreBelowTheConfiguredRootAndTheUsualFolders(self):
        tops = {file.split("/", 1)[0] for file in self.files()}
        self.assertEqual(tops, {"bin", "include", "lib", "share"})
        self.assertTrue((self.root / "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/MacOS/Dovrel").is_file())
        self.assertFalse((self.root / "Library/Logs").exists())

    def test_Logs_AreInTheUsersStateFolder(self):
        self.expect(self.run_host(host=HOST.replace('"Counter"', '"Bounter"')), 1)
        folder = self.home / ".local/state/dovrel"
        self.assertIn("STR:My program\n", (folder / "Tessilor/POSDLLErrorLog.txt").read_text(errors="replace"))
        self.assertEqual(folder.stat().st_mode & 0o7777, 0o700)
        self.assertFalse((self.root / "Library/Logs").exists())

    def test_Logs_WithAStateFolderOfTheUser_AreThere(self):
        self.expect(self.run_host(f'export XDG_STATE_HOME="{self.folder}/state"', HOST.replace('"add"', '"bad"')), 1)
        self.assertTrue((self.folder / "state/dovrel/Tessilor/POSDLLErrorLog.txt").is_file())
        self.assertFalse((self.home / ".local").exists())

    def test_Uninstall_AfterTheProductWasUsed_LeavesNothing(self):
        self.expect(self.run_host(), 0, "sum: 2\n")
        self.end_servers()
        shutil.rmtree(self.root / "tmp")
        self.expect(self.uninstall(), 0)
        self.assertFalse(PREFIX.exists(), self.files())

    def test_Uninstall_AfterTheThirdInstallation_LeavesNothing(self):
        shutil.rmtree(self.root / "tmp")
        self.install()
        self.install()
        self.expect(self.uninstall(), 0)
        self.assertFalse(PREFIX.exists(), self.files())

    def test_Uninstall_WithFilesOfOthers_LeavesTheseAndNothingElse(self):
        shutil.rmtree(self.root / "tmp")
        (PREFIX / "bin/other").touch()
        (self.products / "Merrowd.conf").touch()
        self.expect(self.uninstall(), 0)
        self.assertEqual(self.files(), ["bin/other", "lib/dovrel/Library/Application Support/Tessilor/pos/Merrowd.conf"])

    def test_Uninstall_Twice_FailsWithTheReason(self):
        self.expect(self.uninstall(), 0)
        result = self.uninstall()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("Nothing is installed from", result.stdout + result.stderr)


class DefaultRoot(Configured):
    def test_Uninstall_OfAnInstallationThatIsASystemRoot_LeavesNothing(self):
        self.configure("without-root", "")
        self.install()
        self.assertTrue((PREFIX / "Library/Logs/Tessilor").is_dir())
        self.expect(self.uninstall(), 0)
        self.assertFalse(PREFIX.exists(), self.files())

    def test_Uninstall_WithDestdir_LeavesTheRestOfIt(self):
        self.configure("without-root", "")
        staging = self.folder / "staging"
        setting = f'export DESTDIR="{staging}"\n'
        self.run_expecting_success(f'{setting}cmake --install "{self.configured}" --prefix /usr')
        self.assertTrue((staging / "usr/lib/libdovrel.so.1").is_symlink())
        self.run_expecting_success(f'{setting}cmake --build "{self.configured}" --target uninstall')
        self.assertEqual([path for path in staging.rglob("*") if not path.is_dir()], [])
        self.assertEqual(self.files(), [])
