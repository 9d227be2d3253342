// Repeats calls that return objects. Releasing the objects must free all memory, even in a
// thread without an autorelease pool.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "FileManager.h"
#include "tests/portability/support/Held.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace {

using dovrel::test::heapInUse;

class Memory : public testing::Test {
  protected:
    Memory() {
        folder_.write("X.bundle/Contents/Info.plist",
                      "<plist><dict><key>CFBundleIdentifier</key><string>com.example.memory</string>"
                      "<key>List</key><array><integer>1</integer><date>2001-02-03T04:05:06Z</date>"
                      "<data>AQID</data><real>1.5</real><true/></array></dict></plist>");
        folder_.write("X.bundle/Contents/Resources/de.lproj/InfoPlist.strings", "CFBundleName = \"Name\";");
        folder_.write("GNUstep/Defaults/NSGlobalDomain.plist", "{ AppleLanguages = (de); }");
        folder_.write("Damaged.bundle/Contents/Info.plist",
                      "<plist><array><string/><integer>x</integer></array></plist>");
        folder_.write("Broken.bundle/Contents/Info.plist", "{ a = ( b, ");
    }

    void useBundle(const std::string& name) const {
        const Held<CFURLRef> url(newFileURL(folder_.path(name), true));
        const Held<CFBundleRef> bundle(CFBundleCreate(kCFAllocatorDefault, url.get()));
        CFBundleGetIdentifier(bundle.get());
        CFBundleGetVersionNumber(bundle.get());
        CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("CFBundleName"));
        const Held<CFURLRef> resources(CFBundleCopyResourcesDirectoryURL(bundle.get()));
        const Held<CFURLRef> resource(
            CFBundleCopyResourceURL(bundle.get(), CFSTR("absent"), nullptr, nullptr));
        const Held<CFURLRef> appended(
            CFURLCreateCopyAppendingPathComponent(kCFAllocatorDefault, resources.get(), CFSTR("a b"), true));
        FSRef ref;
        CFURLGetFSRef(url.get(), &ref);
        const Held<CFURLRef> back(CFURLCreateFromFSRef(kCFAllocatorDefault, &ref));
        EXPECT_EQ(toPath(back.get()), folder_.path(name));
    }

    void useEverything() const {
        for (const char* name : {"X.bundle", "Damaged.bundle", "Broken.bundle"}) {
            useBundle(name);
        }
        const Held<CFPropertyListRef> languages(
            CFPreferencesCopyValue(CFSTR("AppleLanguages"), kCFPreferencesAnyApplication,
                                   kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
        EXPECT_NE(languages.get(), nullptr);
        EXPECT_EQ(CFStringCompare(CFSTR("a"), CFSTR("A"), kCFCompareCaseInsensitive), kCFCompareEqualTo);
        const Held<CFStringRef> invalid(newString("\xFF"));
        EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("com.example.absent")), nullptr);
    }

    void useEverythingOften(int count) const {
        for (int index = 0; index < count; ++index) {
            useEverything();
        }
    }

    const dovrel::test::TemporaryFolder folder_;
    const VariableChange home_{"HOME", folder_.path().c_str()};
};

constexpr int kWarmUp = 20;
constexpr int kRepetitions = 200;
constexpr std::size_t kTolerance = 20 * kRepetitions;  // less than one object per repetition

}  // namespace

TEST_F(Memory, RepeatedCalls_LeaveNothingBehind) {
    useEverythingOften(kWarmUp);
    const std::size_t before = heapInUse();
    useEverythingOften(kRepetitions);
    EXPECT_LT(heapInUse(), before + kTolerance);
}

TEST_F(Memory, RepeatedCallsInAThread_LeaveNothingBehind) {
    std::size_t growth = 0;
    std::thread([this, &growth] {
        useEverythingOften(kWarmUp);
        const std::size_t before = heapInUse();
        useEverythingOften(kRepetitions);
        const std::size_t after = heapInUse();
        growth = after > before ? after - before : 0;
    }).join();
    EXPECT_LT(growth, kTolerance);
}
