#include "InterProcessCommunication/ServerDiscovery.h"

#include <cerrno>

#include "platform/CFObject.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"

namespace dovrel {
namespace {

using test::Launch;

class ServerDiscoveryTest : public test::ChannelFixture {
  protected:
    bool runsBeside(const std::vector<std::string>& names) {
        platform.processes = names;
        return IsServerRunning();
    }

    std::string installedPath() const { return root.path(test::kServerBundle); }
};

TEST_F(ServerDiscoveryTest, IsServerRunning_WithAProcessOfItsName_IsTrue) {
    EXPECT_TRUE(runsBeside({"launchd", "Merrowd", "shell"}));
    EXPECT_TRUE(runsBeside({"Merrowd"}));
}

TEST_F(ServerDiscoveryTest, IsServerRunning_WithANameThatMerelyBeginsLikeIt_IsFalse) {
    EXPECT_FALSE(runsBeside({"Merrowdx", "Merrowd Helper", "Merrowd."}));
}

TEST_F(ServerDiscoveryTest, IsServerRunning_WithAnyOtherName_IsFalse) {
    EXPECT_FALSE(runsBeside({"merrowd", "MERROWD", "Merrow", "xMerrowd", "", "sixteen-long-nam"}));
    EXPECT_FALSE(runsBeside({}));
}

TEST_F(ServerDiscoveryTest, IsServerRunning_WithoutAReadableList_IsFalse) {
    platform.processes = {"Merrowd"};
    platform.queryErrors = {{1, EPERM}};
    EXPECT_FALSE(IsServerRunning());
}

TEST_F(ServerDiscoveryTest, FindServerApplication_ReturnsTheURLOfTheInstalledBundle) {
    install();
    CFURLRef found = nullptr;
    EXPECT_EQ(FindServerApplication(&found), 0);
    ASSERT_NE(found, nullptr);
    const CFObject<CFURLRef> application(found);
    UInt8 path[1024] = {};
    ASSERT_TRUE(CFURLGetFileSystemRepresentation(application.get(), true, path, sizeof path));
    EXPECT_EQ(reinterpret_cast<const char*>(path), installedPath());
    EXPECT_EQ(platform.folderLookups, 1);
}

TEST_F(ServerDiscoveryTest, FindServerApplication_WithoutTheBundle_Is42AndNoURL) {
    CFURLRef found = nullptr;
    EXPECT_EQ(FindServerApplication(&found), 42);
    EXPECT_EQ(found, nullptr);
}

TEST_F(ServerDiscoveryTest, FindServerApplication_WithoutTheFolder_IsTheLookupsError) {
    install();
    platform.findFolderResult = nsvErr;
    CFURLRef found = nullptr;
    EXPECT_EQ(FindServerApplication(&found), nsvErr);
    EXPECT_EQ(found, nullptr);
}

TEST_F(ServerDiscoveryTest, FindServerApplication_WhenTheFolderHasNoURL_Is42) {
    install();
    platform.folderHasURL = false;
    CFURLRef found = nullptr;
    EXPECT_EQ(FindServerApplication(&found), 42);
    EXPECT_EQ(found, nullptr);
}

TEST_F(ServerDiscoveryTest, LaunchServer_AsksForTheBackgroundLaunchOfTheApplicationAndNothingElse) {
    install();
    platform.launch = [](const Launch&) { return OSStatus{-10810}; };
    CFURLRef found = nullptr;
    ASSERT_EQ(FindServerApplication(&found), 0);
    const CFObject<CFURLRef> application(found);
    EXPECT_EQ(LaunchServer(application.get()), -10810);
    ASSERT_EQ(platform.launches.size(), 1u);
    EXPECT_EQ(platform.launches.front().path, installedPath());
    EXPECT_EQ(platform.launches.front().flags, LSLaunchFlags{0xB00});
    EXPECT_FALSE(platform.launches.front().hasOtherFields);
}

}  // namespace
}  // namespace dovrel
