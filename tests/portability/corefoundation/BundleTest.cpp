#include "portability/corefoundation/Bundle.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

namespace files = std::filesystem;
using portability::bundleAround;
using portability::createBundle;

std::string readOutput(const std::string& program) {
    FILE* output = popen(("'" + program + "'").c_str(), "r");
    std::string text;
    for (int character = std::fgetc(output); character != EOF; character = std::fgetc(output)) {
        text += static_cast<char>(character);
    }
    pclose(output);
    return text;
}

class Bundle : public testing::Test {
  protected:
    std::string readValue(const std::string& bundle, CFStringRef key) const {
        const Held<CFBundleRef> held(createBundle(folder_.path(bundle)));
        return held.get() == nullptr ? "(no bundle)"
                                     : toText(CFBundleGetValueForInfoDictionaryKey(held.get(), key));
    }

    std::string findResource(const std::string& bundle, CFStringRef name, CFStringRef type) const {
        const Held<CFBundleRef> held(createBundle(folder_.path(bundle)));
        const Held<CFURLRef> url(CFBundleCopyResourceURL(held.get(), name, type, nullptr));
        return toPath(url.get());
    }

    using FindPlugBundle = CFBundleRef (*)(CFStringRef);

    // Stages a bundle, loads its code, and returns a function of that code that finds bundles.
    FindPlugBundle loadPlug(const std::string& bundle, const std::string& identifier,
                            const std::string& version) {
        folder_.write(bundle + "/Contents/Info.plist", "{ CFBundleIdentifier = \"" + identifier +
                                                           "\"; CFBundleVersion = \"" + version + "\"; }");
        const std::string code = folder_.path(bundle + "/Contents/MacOS/Plug");
        files::create_directories(folder_.path(bundle + "/Contents/MacOS"));
        files::copy_file(LOADED_PLUG, code);
        void* image = dlopen(code.c_str(), RTLD_NOW | RTLD_LOCAL);
        return image == nullptr ? nullptr : reinterpret_cast<FindPlugBundle>(dlsym(image, "findPlugBundle"));
    }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange home_{"HOME", folder_.path().c_str()};
    const VariableChange all_{"LC_ALL", "de_DE.UTF-8"};
};

}  // namespace

TEST_F(Bundle, Create_SameFolderTwice_IsOneBundleUntilBothAreReleased) {
    files::create_directory(folder_.path("X.bundle"));
    files::create_directory_symlink(folder_.path("X.bundle"), folder_.path("link"));
    const Held<CFBundleRef> first(createBundle(folder_.path("X.bundle")));
    const Held<CFBundleRef> second(createBundle(folder_.path("link")));
    EXPECT_EQ(first.get(), second.get());
}

TEST_F(Bundle, Create_AfterTheLastRelease_ReadsTheInfoAnew) {
    folder_.write("X.bundle/Contents/Info.plist", "{ CFBundleVersion = \"1.0\"; }");
    EXPECT_EQ(readValue("X.bundle", kCFBundleVersionKey), "1.0");
    folder_.write("X.bundle/Contents/Info.plist", "{ CFBundleVersion = \"2.0\"; }");
    EXPECT_EQ(readValue("X.bundle", kCFBundleVersionKey), "2.0");
}

TEST_F(Bundle, Create_OfAFile_IsNull) {
    folder_.write("file", "x");
    EXPECT_EQ(createBundle(folder_.path("file")), nullptr);
}

TEST_F(Bundle, Info_InTheUsersLanguage_GoesBeforeTheInfoPlist) {
    folder_.write("X.bundle/Contents/Info.plist", "{ CFBundleName = Plain; CFBundleVersion = \"1\"; }");
    folder_.write("X.bundle/Contents/Resources/de.lproj/InfoPlist.strings", "CFBundleName = \"Deutsch\";\n");
    EXPECT_EQ(readValue("X.bundle", kCFBundleNameKey), "Deutsch");
    EXPECT_EQ(readValue("X.bundle", kCFBundleVersionKey), "1");
    const VariableChange french("LC_ALL", "fr_FR.UTF-8");
    EXPECT_EQ(readValue("X.bundle", kCFBundleNameKey), "Plain");
}

TEST_F(Bundle, Resources_WithoutLanguageFirst_ThenTheUsersThenTheBundlesOwn) {
    folder_.write("X.bundle/Contents/Resources/both.txt", "x");
    folder_.write("X.bundle/Contents/Resources/de.lproj/both.txt", "x");
    folder_.write("X.bundle/Contents/Resources/German.lproj/older.txt", "x");
    folder_.write("X.bundle/Contents/Resources/en.lproj/english.txt", "x");
    const std::string resources = folder_.path("X.bundle/Contents/Resources");
    EXPECT_EQ(findResource("X.bundle", CFSTR("both"), CFSTR("txt")), resources + "/both.txt");
    EXPECT_EQ(findResource("X.bundle", CFSTR("older"), CFSTR("txt")), resources + "/German.lproj/older.txt");
    EXPECT_EQ(findResource("X.bundle", CFSTR("english"), CFSTR("txt")), resources + "/en.lproj/english.txt");
    EXPECT_EQ(findResource("X.bundle", CFSTR("absent"), CFSTR("txt")), "(none)");
}

TEST_F(Bundle, Layout_WithoutContents_IsFlatOrHasAResourcesFolder) {
    folder_.write("Flat.bundle/Info.plist", "{ CFBundleIdentifier = flat; CFBundleExecutable = Code; }");
    folder_.write("Flat.bundle/Code", "x");
    folder_.write("Flat.bundle/page.html", "x");
    folder_.write("Old.bundle/Resources/Info.plist", "{ CFBundleIdentifier = old; }");
    folder_.write("Old.bundle/Resources/page.html", "x");
    EXPECT_EQ(readValue("Flat.bundle", kCFBundleIdentifierKey), "flat");
    EXPECT_EQ(findResource("Flat.bundle", CFSTR("page"), CFSTR("html")),
              folder_.path("Flat.bundle/page.html"));
    EXPECT_EQ(readValue("Old.bundle", kCFBundleIdentifierKey), "old");
    EXPECT_EQ(findResource("Old.bundle", CFSTR("page"), CFSTR("html")),
              folder_.path("Old.bundle/Resources/page.html"));
    const Held<CFBundleRef> flat(createBundle(folder_.path("Flat.bundle")));
    EXPECT_EQ(flat.get()->executable(), folder_.path("Flat.bundle/Code"));
}

TEST_F(Bundle, ExecutableURL_WithoutExecutable_IsNull) {
    files::create_directories(folder_.path("X.bundle/Contents"));
    const Held<CFBundleRef> bundle(createBundle(folder_.path("X.bundle")));
    EXPECT_EQ(CFBundleCopyExecutableURL(bundle.get()), nullptr);
}

TEST_F(Bundle, BundleAround_OnlyForProgramsInABundle_IsItsFolder) {
    EXPECT_EQ(bundleAround("/a/X.app/Contents/MacOS/X"), "/a/X.app");
    EXPECT_EQ(bundleAround("/a/X.app/Contents/MacOS/deeper/X"), "");
    EXPECT_EQ(bundleAround("/usr/bin/X"), "");
    EXPECT_EQ(bundleAround("X"), "");
    EXPECT_EQ(bundleAround(""), "");
}

TEST_F(Bundle, GetBundleWithIdentifier_OfLoadedCode_IsFoundByItselfAndByOthers) {
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.loaded")), nullptr);
    const FindPlugBundle find = loadPlug("Plug.bundle", "com.example.loaded", "1.0");
    ASSERT_NE(find, nullptr);
    const CFBundleRef byItself = find(CFSTR("com.example.loaded"));
    ASSERT_NE(byItself, nullptr);
    EXPECT_EQ(byItself->path(), folder_.path("Plug.bundle"));
    const CFBundleRef byOthers = CFBundleGetBundleWithIdentifier(CFSTR("com.example.loaded"));
    ASSERT_NE(byOthers, nullptr);
    EXPECT_EQ(byOthers->path(), folder_.path("Plug.bundle"));
}

TEST_F(Bundle, GetBundleWithIdentifier_TwoLoadedWithIt_CodeFindsItsOwn) {
    const FindPlugBundle find = loadPlug("Older.bundle", "com.example.twice", "1.0");
    ASSERT_NE(loadPlug("Newer.bundle", "com.example.twice", "2.0"), nullptr);
    EXPECT_EQ(find(CFSTR("com.example.twice"))->path(), folder_.path("Older.bundle"));
}

TEST_F(Bundle, GetBundleWithIdentifier_TwoLoadedWithIt_OthersFindTheHigherVersion) {
    ASSERT_NE(loadPlug("Newer.bundle", "com.example.both", "2.0"), nullptr);
    ASSERT_NE(loadPlug("Older.bundle", "com.example.both", "1.0"), nullptr);
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.both"))->path(),
              folder_.path("Newer.bundle"));
}

TEST_F(Bundle, GetMainBundle_OfAProgramInABundle_IsThatBundle) {
    folder_.write("X.app/Contents/Info.plist", "{ CFBundleIdentifier = \"com.example.main\"; }");
    const std::string program = folder_.path("X.app/Contents/MacOS/X");
    files::create_directories(folder_.path("X.app/Contents/MacOS"));
    files::copy_file(MAIN_BUNDLE_PROBE, program);
    EXPECT_EQ(readOutput(program), "com.example.main\n" + folder_.path("X.app") + "\n");
}

TEST_F(Bundle, GetMainBundle_OfAProgramInNoBundle_IsItsFolder) {
    const std::string program = folder_.path("tool");
    files::copy_file(MAIN_BUNDLE_PROBE, program);
    EXPECT_EQ(readOutput(program), "(none)\n" + folder_.path() + "\n");
}

TEST_F(Bundle, ManyThreads_MakingAndReleasing_ShareOneBundle) {
    folder_.write("X.bundle/Contents/Info.plist", "{ CFBundleIdentifier = shared; }");
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index) {
        threads.emplace_back([this, &failures] {
            for (int count = 0; count < 100; ++count) {
                failures += readValue("X.bundle", kCFBundleIdentifierKey) == "shared" ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}
