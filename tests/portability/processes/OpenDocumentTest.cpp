// Opening documents and pages with the desktop's opener. A script takes the place of the opener.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/portability/processes/ProbeReport.h"
#include "tests/portability/support/Held.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"
#include "tests/support/WaitUntil.h"

namespace {

namespace files = std::filesystem;
using dovrel::test::waitUntil;

class OpenDocument : public testing::Test {
  protected:
    OpenDocument() {
        folder_.write("Library/Help/index.html", "<p>");
        folder_.write("bin/xdg-open",
                      "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" > '" + folder_.path("unfinished") + "'\nmv '" +
                          folder_.path("unfinished") + "' '" + folder_.path("opened") + "'\n");
        chmod(folder_.path("bin/xdg-open").c_str(), 0755);
    }

    // Returns the number of arguments that the opener received, and the first one.
    std::string opened() const {
        EXPECT_TRUE(waitUntil([this] { return files::exists(folder_.path("opened")); }));
        return folder_.read("opened");
    }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange root_{"POS_SYSTEM_ROOT", folder_.path().c_str()};
    const VariableChange path_{"PATH", ("relative:" + folder_.path("bin") + ":/usr/bin:/bin").c_str()};
};

CFURLRef newURL(const char* text) {
    const Held<CFStringRef> string(newString(text));
    return CFURLCreateWithString(kCFAllocatorDefault, string.get(), nullptr);
}

}  // namespace

TEST_F(OpenDocument, File_IsGivenToTheOpenerByItsPath) {
    const Held<CFURLRef> url(newFileURL("/Library/Help/index.html"));
    CFURLRef launched = nullptr;
    ASSERT_EQ(LSOpenCFURLRef(url.get(), &launched), noErr);
    const Held<CFURLRef> holder(launched);
    EXPECT_EQ(toPath(launched), folder_.path("bin/xdg-open"));
    EXPECT_EQ(opened(), "1\n" + folder_.path("Library/Help/index.html") + "\n");
}

TEST_F(OpenDocument, FolderThatIsNotAnApplication_IsPassedToTheOpener) {
    const Held<CFURLRef> url(newFileURL("/Library/Help", true));
    ASSERT_EQ(LSOpenCFURLRef(url.get(), nullptr), noErr);
    EXPECT_EQ(opened(), "1\n" + folder_.path("Library/Help") + "\n");
}

TEST_F(OpenDocument, FileThatIsNotThere_IsNotFoundAndNothingIsOpened) {
    const Held<CFURLRef> url(newFileURL("/Library/Help/absent.html"));
    EXPECT_EQ(LSOpenCFURLRef(url.get(), nullptr), fnfErr);
}

TEST_F(OpenDocument, NoOpener_IsApplicationNotFound) {
    files::remove(folder_.path("bin/xdg-open"));
    const VariableChange path("PATH", folder_.path("bin").c_str());
    const Held<CFURLRef> url(newFileURL("/Library/Help/index.html"));
    EXPECT_EQ(LSOpenCFURLRef(url.get(), nullptr), kLSApplicationNotFoundErr);
}

TEST_F(OpenDocument, Application_IsLaunchedInstead) {
    folder_.write("Library/Tool.app/Contents/Info.plist",
                  "{ CFBundlePackageType = APPL; CFBundleExecutable = Tool; }");
    const std::string program = folder_.path("Library/Tool.app/Contents/MacOS/Tool");
    installProbe(program);
    const Held<CFURLRef> url(newFileURL("/Library/Tool.app", true));
    ASSERT_EQ(LSOpenCFURLRef(url.get(), nullptr), noErr);
    const ProbeReport report(program);
    EXPECT_EQ(report["arguments"], "1");
}

TEST_F(OpenDocument, Page_IsGivenToTheOpenerByItsAddress) {
    const Held<CFURLRef> url(newURL("http://www.tessilor.example/download?a=b#c"));
    EXPECT_EQ(LSOpenCFURLRef(url.get(), nullptr), noErr);
    EXPECT_EQ(opened(), "1\nhttp://www.tessilor.example/download?a=b#c\n");
}

TEST_F(OpenDocument, AddressWithoutScheme_IsApplicationNotFound) {
    const Held<CFURLRef> url(newURL("--version"));
    EXPECT_EQ(LSOpenCFURLRef(url.get(), nullptr), kLSApplicationNotFoundErr);
    EXPECT_FALSE(files::exists(folder_.path("opened")));
}

TEST_F(OpenDocument, LaunchRequestWithItems_IsAParameterError) {
    folder_.write("GNUstep/Defaults/NSGlobalDomain.plist", "{ AppleLanguages = (de); }");
    const VariableChange home("HOME", folder_.path().c_str());
    const Held<CFPropertyListRef> items(
        CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                               kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
    const Held<CFURLRef> page(newURL("http://www.tessilor.example/"));
    const LSLaunchURLSpec spec = {page.get(), static_cast<CFArrayRef>(items.get()), nullptr,
                                  kLSLaunchDefaults, nullptr};
    EXPECT_EQ(LSOpenFromURLSpec(&spec, nullptr), paramErr);
}
