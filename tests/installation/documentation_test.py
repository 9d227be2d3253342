"""Follows the tutorial in a copy of this system in which the packages are installed, and looks into dovrel-doc."""
from packages_test import Packages
from tutorial import FILES, FOLDER, PACKAGES, STEPS


class Documentation(Packages):
    def test_PackageOfTheDocumentation_ContainsManualPagesDocumentsAndApiPages(self):
        listed = self.run_expecting_success(f'dpkg-deb --contents "{self.package("dovrel-doc")}"')
        for path in ("man/man3/posCallMethod.3.gz", "man/man7/dovrel.7.gz", "man/man5/merrowd.conf.5.gz",
                     "doc/dovrel-doc/tutorial.md", "doc/dovrel-doc/troubles.md", "doc/dovrel-doc/api/index.html",
                     "doc/dovrel-doc/pictures/alert-en.png"):
            self.assertIn(f"./usr/share/{path}\n", listed)
        listed = self.run_expecting_success(f'dpkg-deb --contents "{self.package("dovrel-tools")}"')
        self.assertIn("./usr/share/man/man1/dovrel.1.gz\n", listed)

    def test_TutorialFromThePackages_ShowsWhatThePageShows(self):
        self.skip_without_copies()
        # The packages are in the folder in which root stands; the steps follow each other in one shell.
        steps = "".join(f"{{ {step.content.rstrip()}\n}} 2>&1\necho END-OF-STEP\n" for step in STEPS)
        files = "".join(f"cat >{name} <<'END-OF-FILE'\n{content}END-OF-FILE\n" for name, content in FILES.items() if "/" not in name)
        result = self.run_in_a_copy(f"""
cd /tmp
{{ {PACKAGES.rstrip()}
}} >installed 2>&1 || {{ cat installed; exit 1; }}
mkdir -m 777 home
cat >as-user <<'END-OF-USER'
set -e
export HOME=/tmp/home PATH=/usr/bin:/bin
unset POS_SYSTEM_ROOT XDG_RUNTIME_DIR XDG_STATE_HOME LD_LIBRARY_PATH PKG_CONFIG_PATH PYTHONPATH
{FOLDER}{files}{steps}
END-OF-USER
setpriv --reuid=65534 --regid=65534 --clear-groups bash as-user
""")
        self.expect(result, 0)
        outputs = result.stdout.split("END-OF-STEP\n")
        for step, output in zip(STEPS, outputs):
            missing = [text for text in step.expected if text not in output]
            self.assertEqual(missing, [], output)
        self.assertEqual(len(outputs), len(STEPS) + 1)
