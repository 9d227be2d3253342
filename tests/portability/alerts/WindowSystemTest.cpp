// The alert helper in a restricted environment, and its effects on that environment.
#include <fcntl.h>

#include <cstdlib>
#include <filesystem>

#include "tests/portability/alerts/HelperWindowTest.h"
#include "tests/support/ChildProcess.h"

namespace alerthelper::test {
namespace {

class WindowSystemTest : public HelperWindowTest {};

TEST_F(WindowSystemTest, WithoutSessionBus_StartsNoOtherProgram) {
    folder_.write("bin/dbus-launch", "#!/bin/sh\n: >" + folder_.path("launched") + "\n");
    std::filesystem::permissions(folder_.path("bin/dbus-launch"), std::filesystem::perms::owner_all);
    setenv("PATH", (folder_.path("bin") + ":" + getenv("PATH")).c_str(), 1);
    show(requestIn("English"));
    EXPECT_EQ(dovrel::test::readOutput({"pgrep", "--parent", std::to_string(helper_->process())}), "");
    EXPECT_FALSE(std::filesystem::exists(folder_.path("launched")));
}

TEST_F(WindowSystemTest, SessionBusThatCannotBeReached_DoesNotDisturbIt) {
    writesNothing_ = false;
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder_.path("no-bus")).c_str(), 1);
    EXPECT_EQ(lineAfterKey(requestIn("English"), "Return"), pressed(0));
}

TEST_F(WindowSystemTest, Libraries_WriteNothingUnlessAskedTo) {
    unsetenv("G_MESSAGES_DEBUG");
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder_.path("no-bus")).c_str(), 1);
    setenv("LANG", "xx_XX.not-there", 1);
    EXPECT_EQ(lineAfterKey(requestIn("English"), "Return"), pressed(0));
}

TEST_F(WindowSystemTest, FolderOfTheUserThatCannotBeWritten_DoesNotDisturbIt) {
    setenv("HOME", "/proc/not-there", 1);
    setenv("XDG_RUNTIME_DIR", "/proc/not-there", 1);
    EXPECT_EQ(lineAfterKey(requestIn("English"), "Return"), pressed(0));
}

TEST_F(WindowSystemTest, Window_NeedsNoGraphicsDriver) {
    show(requestIn("English"));
    const std::string maps = readFile("/proc/" + std::to_string(helper_->process()) + "/maps");
    EXPECT_NE(maps.find("libgtk-4"), std::string::npos);
    for (const char* driver : {"/dri/", "libLLVM", "libEGL_", "libGLX_", "libvulkan_"})
        EXPECT_EQ(maps.find(driver), std::string::npos) << driver;
}

TEST_F(WindowSystemTest, Stream_IsNotPassedOn) {
    show(requestIn("English"));
    const std::string info = readFile("/proc/" + std::to_string(helper_->process()) + "/fdinfo/3");
    const size_t flags = info.find("flags:");
    ASSERT_NE(flags, std::string::npos) << info;
    EXPECT_TRUE(std::stoul(info.substr(flags + 6), nullptr, 8) & O_CLOEXEC) << info;
}

}  // namespace
}  // namespace alerthelper::test
