"""Links programs with an installation of this build, and loads its bundle."""
import contextlib
import os
import plistlib
import re
import subprocess
from pathlib import Path

from installation import IS_ROOT, SOURCES, USER, Installation

BUILD = Path(os.environ["DOVREL_BINARY_DIR"])
PROJECT = Path(__file__).resolve().parent / "project"
HOST = re.search(r"^```c\n(.*?)^```$", (SOURCES / "README.md").read_text(), re.MULTILINE | re.DOTALL)[1]
VERSION = ".".join(re.findall(r"^#define POS_VERSION_\w+ (\d+)$", (SOURCES / "include/dovrel/pos.h").read_text(),
                              re.MULTILINE))


class Library(Installation):
    def setUp(self):
        super().setUp()
        self.work = self.new_folder("work")
        (self.work / "counter.c").write_text(HOST)
        self.install()

    def install(self):
        self.expect(self.run_as(True, f'cmake --install "{BUILD}" --prefix "{self.root}"', self.work), 0)

    @property
    def bundle(self):
        return self.products / "Dovrel.bundle"

    def run_here(self, commands):
        """Runs the commands as the user, with what a user of the installation sets."""
        setup = (f'export POS_SYSTEM_ROOT="{self.root}" PKG_CONFIG_PATH="{self.root}/lib/pkgconfig"\n'
                 f'export CMAKE_PREFIX_PATH="{self.root}"\n'
                 f'run() {{ LD_LIBRARY_PATH="{self.root}/lib" "$@"; }}\n')
        return self.run_as(False, setup + commands, self.work)

    def configure(self, version=""):
        return self.run_here(f'cmake -S "{PROJECT}" -B build -DHOST="{self.work}/counter.c" -DREQUESTED_VERSION={version}')

    def build_and_run(self, commands, output):
        result = self.run_here(commands)
        self.expect(result, 0)
        self.assertEqual(result.stdout.splitlines()[-len(output):], output)

    def test_ProjectWithCMake_FindsThePackageAndRuns(self):
        self.expect(self.configure("1.0"), 0)
        self.build_and_run("cmake --build build\n./build/counter", ["sum: 2"])

    def test_PackageOfAnotherMajorVersion_IsNotAccepted(self):
        result = self.configure("2.0")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn('requested version "2.0"', result.stderr)

    def test_ProjectWithPkgConfig_FindsTheLibraryAndRuns(self):
        self.build_and_run("cc -std=c99 counter.c $(pkg-config --cflags --libs dovrel) -o counter\nrun ./counter", ["sum: 2"])

    def test_InstallationThatWasMoved_IsFoundInItsNewPlace(self):
        elsewhere = self.home / "elsewhere"
        self.root.rename(elsewhere)
        self.build_and_run(f'PKG_CONFIG_PATH="{elsewhere}/lib/pkgconfig"\n'
                           'cc -std=c99 counter.c $(pkg-config --cflags --libs dovrel) -o counter\n'
                           f'POS_SYSTEM_ROOT="{elsewhere}" LD_LIBRARY_PATH="{elsewhere}/lib" ./counter', ["sum: 2"])

    def test_Version_IsThatOfTheHeaderEverywhere(self):
        self.assertRegex(VERSION, r"^\d+\.\d\.\d$")
        result = self.run_here("pkg-config --modversion dovrel")
        self.expect(result, 0, f"{VERSION}\n")
        self.assertIn(f"-- version: {VERSION}\n", self.configure().stdout)
        self.assertTrue((self.root / f"lib/libdovrel.so.{VERSION}").is_file())
        for product in ("Dovrel.bundle", "Merrowd.app"):
            with open(self.products / product / "Contents/Info.plist", "rb") as file:
                self.assertEqual(plistlib.load(file)["CFBundleShortVersionString"], VERSION)
        result = self.run_here(f'"{self.bundle}/Contents/MacOS/dovrel-alert" --version')
        self.expect(result, 0, f"dovrel-alert {VERSION}\n")

    def test_PathOfTheBundle_IsToldByBothPackages(self):
        told = self.run_here("pkg-config --variable=bundle dovrel").stdout.strip().replace("\\", "")
        self.assertEqual(Path(told).resolve(), self.bundle.resolve())
        self.assertIn(f"-- bundle: {self.bundle}\n", self.configure().stdout)

    def test_LinkedProgram_NeedsTheLibraryByItsMajorVersionAndTheVersionOfItsSymbols(self):
        self.expect(self.run_here("cc -std=c99 counter.c $(pkg-config --cflags --libs dovrel) -o counter"), 0)
        needed = self.run_here("readelf --dynamic --version-info --wide counter").stdout
        self.assertIn("Shared library: [libdovrel.so.1]", needed)
        self.assertIn("Name: DOVREL_1 ", needed)

    def compile_both(self):
        self.expect(self.run_here(
            f'cc -std=c99 "{PROJECT}/both.c" $(pkg-config --cflags --libs dovrel) -o both'), 0)

    def test_SessionOpenedThroughTheLinkedLibrary_IsThatOfTheBundle(self):
        self.compile_both()
        self.expect(self.run_here(f'run ./both "{self.bundle}" linked'), 0,
                    "functions: the same\nregistered: 0\nunregistered: 0\n")

    def test_SessionOpenedThroughTheBundle_IsThatOfTheLinkedLibrary(self):
        self.compile_both()
        self.expect(self.run_here(f'run ./both "{self.bundle}" loaded'), 0,
                    "functions: the same\nregistered: 0\nunregistered: 0\n")

    def test_PluginLinkedWithTheLibrary_MeetsTheBundleThatIsLoaded(self):
        """Although the loader would not find a library of this name."""
        self.expect(self.run_here(
            f'cc -std=c99 -fPIC -shared "{PROJECT}/plugin.c" $(pkg-config --cflags --libs dovrel) -o plugin.so\n'
            f'cc -std=c99 "{PROJECT}/later.c" -o later\n./later "{self.bundle}" ./plugin.so'), 0, "functions: the same\n")

    def upgrade(self):
        """Installs the same products again, as other files."""
        paths = list(self.products.rglob("MacOS/*"))
        self.assertGreater(len(paths), 3)
        with contextlib.ExitStack() as files:
            before = [files.enter_context(path.open("rb")) for path in paths]
            for path in paths:
                os.utime(path, (0, 0))
            self.install()
            self.assertEqual([os.fstat(file.fileno()).st_nlink for file in before], [0] * len(paths))

    def test_UpgradeWhileAHostAndItsServerRun_LeavesBothRunningAndNewHostsMeetThem(self):
        self.expect(self.run_here(
            f'c++ -std=c++17 "{PROJECT}/waiting.cpp" $(pkg-config --cflags --libs dovrel) -o waiting\n'
            "cc -std=c99 counter.c $(pkg-config --cflags --libs dovrel) -o counter"), 0)
        environment = {"POS_SYSTEM_ROOT": str(self.root), "LD_LIBRARY_PATH": f"{self.root}/lib", "HOME": str(self.home),
                       "XDG_RUNTIME_DIR": str(self.runtime)}
        rights = {"user": USER, "group": USER, "extra_groups": []} if IS_ROOT else {}
        with subprocess.Popen([self.work / "waiting"], env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              text=True, **rights) as host:
            self.assertEqual(host.stdout.readline(), "sum: 2\n")
            servers = [number for number in self.servers() if number != host.pid]
            self.upgrade()
            self.expect(self.run_here("run ./counter"), 0, "sum: 2\n")
            self.assertEqual(host.communicate("go\n")[0], "sum: 4\n")
        self.assertEqual(len(servers), 1)
        self.assertEqual(self.servers(), servers)
