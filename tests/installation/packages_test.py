"""Makes the Debian packages, and installs, uses and removes them in a copy of this system."""
import fcntl
import re
import shutil
import subprocess

from configured_build import BUILD, configured_build
from installation import SOURCES, Installation

HOST = re.search(r"^```c\n(.*?)^```$", (SOURCES / "README.md").read_text(), re.MULTILINE | re.DOTALL)[1]
VERSION = re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)[1]
PACKAGES = ["dovrel-doc", "dovrel-server", "dovrel-tools", "libdovrel-dev", "libdovrel1", "python3-dovrel"]
# An overlay of the whole system, in mounts of its own, which are gone with the shell. It has its own /tmp.
IN_A_COPY = r"""
mount -t tmpfs none "$1"
mkdir "$1/upper" "$1/work" "$1/copy"
mount -t overlay overlay -o "lowerdir=/,upperdir=$1/upper,workdir=$1/work" "$1/copy"
mount -t tmpfs none "$1/copy/tmp"
mount -t proc proc "$1/copy/proc"
mount --rbind /dev "$1/copy/dev"
cp "$2"/*.deb "$2/counter.c" "$1/copy/tmp"
cp "$2/commands" "$1/copy/tmp/commands"
exec chroot "$1/copy" bash -e /tmp/commands
"""


class Packages(Installation):
    def setUp(self):
        super().setUp()
        lock = open(BUILD / "tests/installation/debian.lock", "w")
        self.addCleanup(lock.close)
        fcntl.flock(lock, fcntl.LOCK_EX)
        configured = configured_build(
            self, "debian", "-DCMAKE_BUILD_TYPE=Debug -DCMAKE_INSTALL_PREFIX=/usr -DDOVREL_SYSTEM_ROOT=lib/dovrel", "debian")
        self.packages = self.folder / "packages"
        # The target "manual" would build the tool again, so its command is called here.
        self.run_expecting_success(f"""cd "{configured}"
"{SOURCES}/scripts/manual-pages" --date 2026-11-22 --gzip --tool tools/dovrel documentation/man
cmake --build . --target api
cpack -B "{self.packages}"
""")

    def run_expecting_success(self, commands):
        result = self.run_as(True, commands, self.folder)
        self.expect(result, 0)
        return result.stdout

    def package(self, name, suffix="deb"):
        path, = self.packages.glob(f"{name}_{VERSION}_*.{suffix}")
        return path

    def field(self, package, name):
        return self.run_expecting_success(f'dpkg-deb --field "{self.package(package)}" {name}').strip()

    def test_Packages_DependOnWhatTheirProgramsNeed(self):
        self.assertEqual(sorted(path.name.split("_")[0] for path in self.packages.glob("*.deb")), PACKAGES)
        for library in ("libc6", "libstdc++6", "libgtk-4-1", "libgnustep-base"):
            self.assertIn(library, self.field("libdovrel1", "Depends"))
        self.assertEqual(self.field("libdovrel-dev", "Depends"), f"libdovrel1 (= {VERSION})")
        self.assertEqual(self.field("python3-dovrel", "Architecture"), "all")
        self.assertEqual(self.field("dovrel-doc", "Architecture"), "all")
        self.assertNotIn("libgnustep", self.field("dovrel-server", "Depends"))
        self.assertIn("libdovrel1", self.field("dovrel-tools", "Depends"))
        self.assertNotIn("libgnustep", self.field("dovrel-tools", "Depends"))

    def test_Packages_AreAcceptedByLintian(self):
        if shutil.which("lintian") is None:
            print("packages_test: Skipped\nlintian is not installed")
            self.skipTest("no lintian")
        result = self.run_as(True, f'lintian --fail-on error,warning "{self.packages}"/*.deb', self.folder)
        tags = set(re.findall(r"^[EW]: (\S+: \S+)", result.stdout, re.MULTILINE))
        self.assertEqual(tags, set(), result.stdout + result.stderr)

    def test_DebugSymbols_AreInPackagesOfTheirOwn(self):
        self.run_expecting_success(f'dpkg-deb -x "{self.package("libdovrel1")}" library\n'
                                   f'dpkg-deb -x "{self.package("libdovrel1-dbgsym", "ddeb")}" symbols')
        library = self.folder / "library/usr/lib/dovrel/Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/MacOS"
        for name in ("Dovrel", "DovrelFoundation", "dovrel-alert"):
            sections = self.run_expecting_success(f'readelf --sections --wide --notes "{library / name}"')
            self.assertNotIn(" .debug_info ", sections)
            number = re.search(r"Build ID: ([0-9a-f]+)", sections)[1]
            symbols = self.folder / f"symbols/usr/lib/debug/.build-id/{number[:2]}/{number[2:]}.debug"
            self.assertIn(" .debug_info ", self.run_expecting_success(f'readelf --sections --wide "{symbols}"'))

    def run_in_a_copy(self, commands):
        (self.packages / "counter.c").write_text(HOST)
        (self.packages / "commands").write_text(commands)
        # In a process namespace of its own, so that no server is left.
        return subprocess.run(["unshare", "--mount", "--pid", "--fork", "--kill-child", "bash", "-ec", IN_A_COPY, "copy",
                               self.new_folder("copy"), self.packages], capture_output=True, text=True, check=False)

    def skip_without_copies(self):
        reason = self.run_in_a_copy("true").stderr
        (self.folder / "copy").rmdir()
        if reason:
            print(f"packages_test: Skipped\nthis user cannot make a copy of the system: {reason}")
            self.skipTest("no copy")

    def test_Packages_InstalledInACopyOfThisSystem_ServeAUserAndAreRemovedWithoutATrace(self):
        self.skip_without_copies()
        result = self.run_in_a_copy(r"""
cd /tmp
find /etc /usr /var -path /var/tmp -prune -o -print | sort >before
dpkg --install *.deb >installed 2>&1 || { cat installed; exit 1; }
ldconfig --print-cache | grep -q libdovrel.so.1
mkdir -m 777 user
cat >as-user <<'END'
set -e
cd /tmp/user
export HOME=/tmp/user POS_ALERTS=log
unset POS_SYSTEM_ROOT XDG_RUNTIME_DIR XDG_STATE_HOME
dovrel doctor --launch >doctor.out || cat doctor.out
dovrel call Digest md5 abc
echo
cc -std=c99 ../counter.c $(pkg-config --cflags --libs dovrel) -o counter
./counter
/usr/bin/python3 - <<'PYTHON'
import dovrel
with dovrel.Session() as session, session.register("Python", ["Digest"]) as application:
    print(application.create("Digest").call("md5", b"abc").decode())
PYTHON
dovrel server stop >/dev/null
sed 's/"Counter"/"Bounter"/' ../counter.c >wrong.c
cc -std=c99 wrong.c $(pkg-config --cflags --libs dovrel) -o wrong
./wrong >wrong.out 2>&1 || echo "failed"
dovrel server stop >/dev/null
grep -l "My program" .local/state/dovrel/Tessilor/POSDLLErrorLog.txt
END
chmod 755 as-user
setpriv --reuid=65534 --regid=65534 --clear-groups bash as-user
dpkg --purge dovrel-doc python3-dovrel libdovrel-dev dovrel-tools dovrel-server libdovrel1 >/dev/null 2>&1
find /etc /usr /var -path /var/tmp -prune -o -print | sort >after
diff before after | grep -i -e dovrel -e merrowd -e tessilor || true
""")
        self.expect(result, 0, "900150983cd24fb0d6963f7d28e17f72\nsum: 2\n900150983cd24fb0d6963f7d28e17f72\nfailed\n"
                               ".local/state/dovrel/Tessilor/POSDLLErrorLog.txt\n")
