// The alert helper's real window, used with mouse and keyboard.
#include <fcntl.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

#include "alerts/helper/ExitCode.h"
#include "tests/portability/alerts/HelperProcess.h"
#include "tests/portability/alerts/HelperScreen.h"
#include "tests/portability/alerts/HelperTest.h"
#include "tests/portability/alerts/ShownWindow.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/WaitUntil.h"

namespace alerthelper::test {
namespace {

using dovrel::test::ChildProcess;
using portability::AlertRequest;

const std::string kShown = R"({"event":"shown"})";
const std::string kHelp = R"({"event":"help"})";

std::string pressed(size_t button) {
    return R"({"button":)" + std::to_string(button) + R"(,"event":"pressed"})";
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

class HelperWindowTest : public HelperTest {
  protected:
    void TearDown() override {
        helper_.reset();
        if (writesNothing_) {
            EXPECT_EQ(contentOf(folder_.path("log")), "");
        }
    }

    void useScreen(const std::string& size, HelperScreen::Manager manager = HelperScreen::Manager::openbox) {
        screen_.emplace(size, manager);
    }

    void start(const AlertRequest& request) {
        if (!screen_) screen_.emplace();
        helper_ = std::make_unique<HelperProcess>(folder_.path("log"));
        helper_->send(request);
    }

    /// Starts the helper and waits for its window.
    std::string show(const AlertRequest& request) {
        start(request);
        EXPECT_EQ(helper_->readLine(), kShown);
        const std::string window = screen_->waitForWindow();
        EXPECT_NE(window, "");
        return window;
    }

    /// What the helper says last, once the key is pressed.
    std::string lineAfterKey(const AlertRequest& request, const std::string& key) {
        show(request);
        HelperScreen::pressKey(key);
        return lastLine();
    }

    std::string lastLine() {
        const std::string line = helper_->readLine();
        EXPECT_EQ(helper_->readLine(), "");
        EXPECT_EQ(helper_->wait(), kFinished);
        EXPECT_TRUE(HelperScreen::windowGoes());
        return line;
    }

    void expectEnd(int code) {
        EXPECT_EQ(helper_->readLine(), "");
        EXPECT_EQ(helper_->wait(), code);
    }

    /// A body that is longer than any screen is high.
    static std::string longBody() {
        std::string body;
        while (body.size() < portability::kLongestAlertBody - 100)
            body += "The line number " + std::to_string(body.size()) + " of a message that nobody reads.\n";
        return body;
    }

    std::optional<HelperScreen> screen_;
    std::unique_ptr<HelperProcess> helper_;
    bool writesNothing_ = true;
};

// Keys.

TEST_F(HelperWindowTest, Return_PressesTheFirstButton) {
    for (const std::vector<std::string>& buttons :
         {std::vector<std::string>{"OK"}, {"Retry", "Cancel"}, {"Yes", "No", "Cancel"}})
        EXPECT_EQ(lineAfterKey(simpleRequest(buttons), "Return"), pressed(0)) << buttons.size();
    EXPECT_EQ(lineAfterKey(simpleRequest({"Retry", "Cancel"}), "KP_Enter"), pressed(0));
}

TEST_F(HelperWindowTest, Escape_PressesTheLastButton) {
    EXPECT_EQ(lineAfterKey(simpleRequest({"OK"}), "Escape"), pressed(0));
    EXPECT_EQ(lineAfterKey(simpleRequest({"Retry", "Cancel"}), "Escape"), pressed(1));
    EXPECT_EQ(lineAfterKey(simpleRequest({"Yes", "No", "Cancel"}), "Escape"), pressed(2));
}

TEST_F(HelperWindowTest, ReturnAndEscape_WorkInEveryLanguage) {
    for (const char* language : {"English", "German", "Francais"}) {
        EXPECT_EQ(lineAfterKey(requestIn(language), "Escape"), pressed(1)) << language;
        EXPECT_EQ(lineAfterKey(requestIn(language), "Return"), pressed(0)) << language;
    }
}

TEST_F(HelperWindowTest, CloseButtonOfTheWindow_PressesTheLastButton) {
    for (const std::vector<std::string>& buttons :
         {std::vector<std::string>{"OK"}, {"Retry", "Cancel"}, {"Yes", "No", "Cancel"}})
        EXPECT_EQ(lineAfterKey(simpleRequest(buttons), "alt+F4"), pressed(buttons.size() - 1));
}

TEST_F(HelperWindowTest, Keyboard_ReachesEveryPart) {
    AlertRequest request = simpleRequest({"Retry", "Cancel"});
    request.help = true;
    const std::string window = show(request);
    // From Retry over heading, body and Help, and on to Cancel.
    for (const char* key : {"Tab", "Tab", "Tab", "space"})
        HelperScreen::pressKey(key);
    EXPECT_EQ(helper_->readLine(), kHelp);
    HelperScreen::pressKey("Tab");
    HelperScreen::pressKey("Return");
    EXPECT_EQ(lastLine(), pressed(1));
}

// Pointer.

TEST_F(HelperWindowTest, Click_PressesTheButtonUnderThePointer) {
    useScreen("1024x768");
    for (const size_t count : {1u, 2u, 3u}) {
        const AlertRequest request = simpleRequest(std::vector<std::string>{"Retry", "Skip", "Cancel"});
        AlertRequest shorter = request;
        shorter.buttons.resize(count);
        const std::vector<Place> places = ShownWindow(shorter).buttonPlaces();
        for (size_t button = 0; button < count; ++button) {
            const std::string window = show(shorter);
            HelperScreen::click(window, places[button].x, places[button].y);
            EXPECT_EQ(lastLine(), pressed(button)) << count;
        }
    }
}

TEST_F(HelperWindowTest, Help_IsToldAtEachPressAndTheWindowStays) {
    useScreen("1024x768");
    const AlertRequest request = requestIn("Francais");
    const Place help = ShownWindow(request).helpPlace();
    const std::string window = show(request);
    for (int press = 0; press < 3; ++press) {
        HelperScreen::click(window, help.x, help.y);
        EXPECT_EQ(helper_->readLine(), kHelp);
        EXPECT_TRUE(HelperScreen::hasWindow());
    }
    EXPECT_FALSE(helper_->hasLine());
    HelperScreen::pressKey("Escape");
    EXPECT_EQ(lastLine(), pressed(1));
}

// Place and size.

TEST_F(HelperWindowTest, NewWindow_GetsTheKeyboardAndIsAboveTheOthers) {
    const std::string window = show(requestIn("English"));
    EXPECT_NE(HelperScreen::property(window, "_NET_WM_STATE").find("_NET_WM_STATE_ABOVE"), std::string::npos);
    EXPECT_NE(HelperScreen::property(window, "_NET_WM_STATE").find("_NET_WM_STATE_MODAL"), std::string::npos);
    EXPECT_EQ(HelperScreen::property(window, "_NET_WM_WINDOW_TYPE"), "_NET_WM_WINDOW_TYPE_DIALOG");
    EXPECT_EQ(HelperScreen::property(window, "_NET_WM_NAME"), "\"Tessilor Runtime: error\"");

    HelperProcess second(folder_.path("log"));
    second.send(simpleRequest({"OK"}));
    EXPECT_EQ(second.readLine(), kShown);
    EXPECT_TRUE(dovrel::test::waitUntil([&] {
        const std::string active = dovrel::test::outputOf({"xdotool", "getactivewindow"});
        return !active.empty() && active != window + "\n";
    }));
    HelperScreen::pressKey("Return");
    EXPECT_EQ(second.readLine(), pressed(0));
    EXPECT_EQ(second.wait(), kFinished);
    EXPECT_FALSE(helper_->hasLine());
}

TEST_F(HelperWindowTest, WithoutWindowManager_IsInTheMiddleAndHasTheKeyboard) {
    useScreen("1024x768", HelperScreen::Manager::none);
    const std::string window = show(requestIn("English"));
    const Area area = HelperScreen::areaOf(window);
    EXPECT_NEAR(area.x, (1024 - area.width) / 2, 1);
    EXPECT_NEAR(area.y, (768 - area.height) / 2, 1);
    HelperScreen::pressKey("Escape");
    EXPECT_EQ(lastLine(), pressed(1));
}

TEST_F(HelperWindowTest, AnyBody_FitsOnTheScreenWithItsBorders) {
    struct Case {
        int width;
        int height;
        const char* scale;
    };
    for (const Case& screen : {Case{640, 480, "1"}, {1280, 1024, "1"}, {1280, 960, "2"}}) {
        setenv("GDK_SCALE", screen.scale, 1);
        useScreen(std::to_string(screen.width) + "x" + std::to_string(screen.height));
        AlertRequest request = requestIn("German");
        for (const std::string& body : {request.body, longBody(), std::string(3000, 'x'),
                                        std::string(portability::kLongestAlertBody, '\n')}) {
            request.body = body;
            const Area area = HelperScreen::areaWithBorders(show(request));
            EXPECT_GE(area.x, 0);
            EXPECT_GE(area.y, 0);
            EXPECT_LE(area.x + area.width, screen.width) << body.size();
            EXPECT_LE(area.y + area.height, screen.height) << body.size();
            HelperScreen::pressKey("Return");
            EXPECT_EQ(lastLine(), pressed(0));
        }
    }
}

TEST_F(HelperWindowTest, SmallestScreenAtTwiceTheSize_ButtonsAreOnIt) {
    setenv("GDK_SCALE", "2", 1);
    useScreen("640x480");
    AlertRequest request = requestIn("German");
    request.body = longBody();
    const Area area = HelperScreen::areaOf(show(request));
    EXPECT_GE(area.x, 0);
    EXPECT_GE(area.y, 0);
    // The window manager's borders may be outside, the window itself is not.
    EXPECT_LE(area.width, 640);
    EXPECT_LE(area.y + area.height, 480);
    HelperScreen::takePicture("alert-640x480-twice");
    HelperScreen::pressKey("Return");
    EXPECT_EQ(lastLine(), pressed(0));
}

TEST_F(HelperWindowTest, TwiceTheSize_IsTwiceAsLarge) {
    useScreen("1280x1024");
    const Area once = HelperScreen::areaOf(show(requestIn("English")));
    setenv("GDK_SCALE", "2", 1);
    const Area twice = HelperScreen::areaOf(show(requestIn("English")));
    // Up to the rounding of characters.
    EXPECT_NEAR(twice.width, 2 * once.width, once.width / 10);
    EXPECT_NEAR(twice.height, 2 * once.height, once.height / 10);
}

TEST_F(HelperWindowTest, Pictures_ForPeopleToLookAt) {
    useScreen("640x480");
    for (const char* language : {"English", "German", "Francais"}) {
        AlertRequest request = requestIn(language);
        const std::string window = show(request);
        const std::string name = std::string("alert-") + language;
        HelperScreen::takePicture(name);
        // A window without its text has a few colours.
        const std::string colours =
            dovrel::test::outputOf({"identify", "-format", "%k\n", DOVREL_PICTURES "/" + name + ".png"});
        EXPECT_GT(std::atoi(colours.c_str()), 50);
        HelperScreen::pressKey("Escape");
        EXPECT_EQ(lastLine(), pressed(1));
    }
}

// Ends that come from outside.

TEST_F(HelperWindowTest, HostThatClosesTheStream_ClosesTheWindow) {
    show(requestIn("English"));
    helper_->closeStream();
    EXPECT_EQ(helper_->wait(), kFinished);
    EXPECT_TRUE(HelperScreen::windowGoes());
}

TEST_F(HelperWindowTest, HostThatIsKilledWhileAnotherProcessKeepsTheStream_ClosesTheWindow) {
    ChildProcess host({"sleep", "1000"});
    AlertRequest request = requestIn("English");
    request.host = std::stoi(
        dovrel::test::outputOf({"pgrep", "--newest", "--parent", std::to_string(getpid()), "sleep"}));
    show(request);
    EXPECT_FALSE(helper_->hasLine());
    host.signal(SIGKILL);
    expectEnd(kFinished);
    EXPECT_TRUE(HelperScreen::windowGoes());
}

TEST_F(HelperWindowTest, HostThatSendsMore_ClosesTheWindow) {
    show(requestIn("English"));
    helper_->sendBytes("x");
    expectEnd(kBadMessage);
    EXPECT_TRUE(HelperScreen::windowGoes());
}

TEST_F(HelperWindowTest, WindowSystemThatEnds_EndsItWithoutAPressedButton) {
    writesNothing_ = false;
    show(requestIn("English"));
    screen_->end();
    expectEnd(kNotShown);
}

// Surroundings.

TEST_F(HelperWindowTest, WithoutSessionBus_StartsNoOtherProgram) {
    folder_.write("bin/dbus-launch", "#!/bin/sh\n: >" + folder_.path("launched") + "\n");
    std::filesystem::permissions(folder_.path("bin/dbus-launch"), std::filesystem::perms::owner_all);
    setenv("PATH", (folder_.path("bin") + ":" + getenv("PATH")).c_str(), 1);
    show(requestIn("English"));
    EXPECT_EQ(dovrel::test::outputOf({"pgrep", "--parent", std::to_string(helper_->process())}), "");
    EXPECT_FALSE(std::filesystem::exists(folder_.path("launched")));
}

TEST_F(HelperWindowTest, SessionBusThatCannotBeReached_DoesNotDisturbIt) {
    writesNothing_ = false;
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder_.path("no-bus")).c_str(), 1);
    EXPECT_EQ(lineAfterKey(requestIn("English"), "Return"), pressed(0));
}

TEST_F(HelperWindowTest, Libraries_WriteNothingUnlessAskedTo) {
    unsetenv("G_MESSAGES_DEBUG");
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder_.path("no-bus")).c_str(), 1);
    setenv("LANG", "xx_XX.not-there", 1);
    EXPECT_EQ(lineAfterKey(requestIn("English"), "Return"), pressed(0));
}

TEST_F(HelperWindowTest, FolderOfTheUserThatCannotBeWritten_DoesNotDisturbIt) {
    setenv("HOME", "/proc/not-there", 1);
    setenv("XDG_RUNTIME_DIR", "/proc/not-there", 1);
    EXPECT_EQ(lineAfterKey(requestIn("English"), "Return"), pressed(0));
}

TEST_F(HelperWindowTest, Window_NeedsNoGraphicsDriver) {
    show(requestIn("English"));
    const std::string maps = contentOf("/proc/" + std::to_string(helper_->process()) + "/maps");
    EXPECT_NE(maps.find("libgtk-4"), std::string::npos);
    for (const char* driver : {"/dri/", "libLLVM", "libEGL_", "libGLX_", "libvulkan_"})
        EXPECT_EQ(maps.find(driver), std::string::npos) << driver;
}

TEST_F(HelperWindowTest, Stream_IsNotPassedOn) {
    show(requestIn("English"));
    const std::string info = contentOf("/proc/" + std::to_string(helper_->process()) + "/fdinfo/3");
    const size_t flags = info.find("flags:");
    ASSERT_NE(flags, std::string::npos) << info;
    EXPECT_TRUE(std::stoul(info.substr(flags + 6), nullptr, 8) & O_CLOEXEC) << info;
}

}  // namespace
}  // namespace alerthelper::test
