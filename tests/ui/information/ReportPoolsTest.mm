// Every function of the report frees the temporary objects of Foundation. This is Objective-C++, because the
// tests inspect the autorelease pools.
#import <Foundation/Foundation.h>

#include <functional>
#include <map>
#include <thread>

#include "tests/ui/information/InstalledComponents.h"
#include "ui/information/ComponentVersions.h"
#include "ui/information/SystemInformation.h"
#include "ui/information/SystemReport.h"

namespace dovrel {
namespace {

const std::map<std::string, std::function<void()>> kFunctions = {
    {"systemVersionValue", [] { systemVersionValue("ProductName"); }},
    {"osNameText", osNameText},
    {"osVersionText", osVersionText},
    {"serverVersionText", serverVersionText},
    {"libraryVersionText", libraryVersionText},
    {"siblingVersionText", siblingVersionText},
    {"compatibilityVersionText", compatibilityVersionText},
    {"managementVersionText", managementVersionText},
    {"installerVersion", [] { installerVersion(serverComponent().path); }},
    {"componentsInstallerVersion", componentsInstallerVersion},
    {"libraryIdentifier", libraryIdentifier},
    {"siblingIdentifier", siblingIdentifier},
    {"compatibilityIdentifier", compatibilityIdentifier},
    {"removedInformationText", removedInformationText},
    {"systemReport", systemReport},
};

class ReportPoolsTest : public test::InstalledComponents {
   protected:
    ReportPoolsTest() {
        writeSystemVersion(test::makeBinaryList("ProductName", "Mac OS X"));
        installAll("7.0");
        writeInfo(serverComponent(), test::makeBinaryList("CFBundleVersion", "1"));
        writeInfo(siblingComponent(), "{ CFBundleVersion = 1; }");
        writeInfo(managementComponent(), "bplist00");
    }
};

TEST_F(ReportPoolsTest, EachFunction_LeavesNothingInTheCallersPool) {
    for (const auto& [name, function] : kFunctions) {
        NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
        [[[NSObject alloc] init] autorelease];
        EXPECT_EQ([pool autoreleaseCount], 1U);
        function();
        EXPECT_EQ([pool autoreleaseCount], 1U) << name;
        [pool release];
    }
}

TEST_F(ReportPoolsTest, ThreadWithoutAPool_CausesNoComplaint) {
    for (const auto& entry : kFunctions) {
        testing::internal::CaptureStderr();
        std::thread(entry.second).join();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << entry.first;
    }
}

}  // namespace
}  // namespace dovrel
