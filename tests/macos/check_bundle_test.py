"""Runs scripts/check-bundle on deliberately damaged bundles. Each must fail exactly the checks for its damage."""
import shutil

from bundle_copy import BUILD, KEPT, MINIMUM, BundleCopyTest


class CheckBundle(BundleCopyTest):
    def test_BundleAsBuilt_Holds(self):
        self.assertEqual(self.check(), (0, {}))

    def test_BundleThatIsNotThere_Fails(self):
        self.bundle = self.folder / "nothing"
        with self.assertRaisesRegex(AssertionError, "does not exist"):
            self.check()


class CheckPropertyList(BundleCopyTest):
    DESCRIBES = "Info.plist: it describes the bundle"
    VERSIONS = "Info.plist: its versions are the project's"

    def test_Damaged_Fails(self):
        self.replace_text(self.property_list, "</dict>", "")
        self.assert_fails({"Info.plist: it is a property list": "mismatched tag"})

    def test_NotADictionary_Fails(self):
        self.property_list.write_text('<plist version="1.0"><array/></plist>')
        self.assert_fails({"Info.plist: it is a property list": "it is not a dictionary"})

    def test_Missing_Fails(self):
        self.property_list.unlink()
        self.assert_fails({"Info.plist: it is a property list": "No such file"})

    def test_AnotherIdentifier_Fails(self):
        self.replace_text(self.property_list, "com.Tessilor.POSAccess-DLL", "com.Tessilor.POSAccess")
        self.assert_fails({self.DESCRIBES: "CFBundleIdentifier is 'com.Tessilor.POSAccess', not"})

    def test_AnotherPackageType_Fails(self):
        self.replace_text(self.property_list, "BNDL", "APPL")
        self.assert_fails({self.DESCRIBES: "CFBundlePackageType"})

    def test_AnotherExecutable_Fails(self):
        self.replace_text(self.property_list, "CFBundleExecutable</key>\n\t<string>Dovrel",
                          "CFBundleExecutable</key>\n\t<string>Other")
        self.assert_fails({self.DESCRIBES: "CFBundleExecutable is 'Other'"})

    def test_AnotherMinimumVersion_Fails(self):
        self.replace_text(self.property_list, f"<string>{MINIMUM}</string>", "<string>10.6</string>")
        self.assert_fails({self.DESCRIBES: "LSMinimumSystemVersion is '10.6'"})

    def test_AnotherVersion_Fails(self):
        self.replace_text(self.property_list, "CFBundleVersion</key>\n\t<string>", "CFBundleVersion</key>\n\t<string>1")
        self.assert_fails({self.VERSIONS: "CFBundleVersion is '1"})

    def test_VersionThatTheSystemReadsAsNone_Fails(self):
        text = self.property_list.read_text()
        head, key, tail = text.partition("CFBundleVersion</key>\n\t<string>")
        self.property_list.write_text(head + key + "1.10" + tail[tail.index("<") :])
        self.assertIn("cannot pack this version", self.check()[1][self.VERSIONS])


class CheckFiles(BundleCopyTest):
    FILES = "bundle: its files match the sources"
    FOLDERS = "bundle: it contains no path of a build machine"

    def test_EveryResourceThatIsMissing_Fails(self):
        resources = [path for path in (BUILD / "Dovrel.bundle/Contents/Resources").rglob("*") if path.is_file()]
        self.assertTrue(resources)
        for resource in resources:
            name = resource.relative_to(BUILD / "Dovrel.bundle")
            with self.subTest(name):
                (self.bundle / name).unlink()
                self.assert_fails({self.FILES: f"{name} is missing"})
                shutil.copy(resource, self.bundle / name)

    def test_AnotherText_Fails(self):
        texts = self.bundle / "Contents/Resources/MultiLanguageTexts.mls"
        texts.write_bytes(texts.read_bytes()[:-1])
        self.assert_fails({self.FILES: "differs from the source"})

    def test_FileThatDoesNotBelong_Fails(self):
        (self.bundle / "Contents/Resources/notes.txt").write_text("")
        self.assert_fails({self.FILES: "notes.txt is not part of the sources"})

    def test_FolderOfABuildMachineInTheExecutable_Fails(self):
        self.relink("x86_64", f'{KEPT} const char posSource[] = "/home/builder/posSource.c";')
        self.assert_fails({self.FOLDERS: "Dovrel contains '/home/builder/posSource.c'"})

    def test_FolderOfABuildMachineInThePropertyList_Fails(self):
        self.replace_text(self.property_list, "</plist>", "<!-- /tmp/build --></plist>")
        self.assert_fails({self.FOLDERS: "Info.plist contains '/tmp/build'"})
