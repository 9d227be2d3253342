// The position and size of the alert helper's window.
#include <cstdlib>

#include "tests/portability/alerts/HelperWindowTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/WaitUntil.h"

namespace alerthelper::test {
namespace {

class HelperPlaceTest : public HelperWindowTest {
  protected:
    /// Returns a body that is higher than any screen.
    static std::string longBody() {
        std::string body;
        while (body.size() < portability::kLongestAlertBody - 100)
            body += "The line number " + std::to_string(body.size()) + " of a message that nobody reads.\n";
        return body;
    }
};

TEST_F(HelperPlaceTest, NewWindow_HasTheKeyboardFocusAndIsAboveTheOthers) {
    const std::string window = show(requestIn("English"));
    EXPECT_NE(HelperScreen::property(window, "_NET_WM_STATE").find("_NET_WM_STATE_ABOVE"), std::string::npos);
    EXPECT_NE(HelperScreen::property(window, "_NET_WM_STATE").find("_NET_WM_STATE_MODAL"), std::string::npos);
    EXPECT_EQ(HelperScreen::property(window, "_NET_WM_WINDOW_TYPE"), "_NET_WM_WINDOW_TYPE_DIALOG");
    EXPECT_EQ(HelperScreen::property(window, "_NET_WM_NAME"), "\"Tessilor Runtime: error\"");

    HelperProcess second(folder_.path("log"));
    second.send(simpleRequest({"OK"}));
    EXPECT_EQ(second.readLine(), kShown);
    EXPECT_TRUE(dovrel::test::waitUntil([&] {
        const std::string active = dovrel::test::readOutput({"xdotool", "getactivewindow"});
        return !active.empty() && active != window + "\n";
    }));
    HelperScreen::pressKey("Return");
    EXPECT_EQ(second.readLine(), pressed(0));
    EXPECT_EQ(second.wait(), kFinished);
    EXPECT_FALSE(helper_->hasLine());
}

TEST_F(HelperPlaceTest, WithoutWindowManager_IsInTheMiddleAndHasTheKeyboard) {
    useScreen("1024x768", HelperScreen::Manager::none);
    const std::string window = show(requestIn("English"));
    const Area area = HelperScreen::readArea(window);
    EXPECT_NEAR(area.x, (1024 - area.width) / 2, 1);
    EXPECT_NEAR(area.y, (768 - area.height) / 2, 1);
    HelperScreen::pressKey("Escape");
    EXPECT_EQ(lastLine(), pressed(1));
}

TEST_F(HelperPlaceTest, AnyBody_FitsOnTheScreenWithItsBorders) {
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

TEST_F(HelperPlaceTest, SmallestScreenAtTwiceTheSize_ButtonsAreOnIt) {
    setenv("GDK_SCALE", "2", 1);
    useScreen("640x480");
    AlertRequest request = requestIn("German");
    request.body = longBody();
    const Area area = HelperScreen::readArea(show(request));
    EXPECT_GE(area.x, 0);
    EXPECT_GE(area.y, 0);
    // The window manager's borders may extend beyond the screen, but not the window itself.
    EXPECT_LE(area.width, 640);
    EXPECT_LE(area.y + area.height, 480);
    HelperScreen::takePicture("alert-640x480-twice");
    HelperScreen::pressKey("Return");
    EXPECT_EQ(lastLine(), pressed(0));
}

TEST_F(HelperPlaceTest, TwiceTheSize_IsTwiceAsLarge) {
    useScreen("1280x1024");
    const Area once = HelperScreen::readArea(show(requestIn("English")));
    setenv("GDK_SCALE", "2", 1);
    const Area twice = HelperScreen::readArea(show(requestIn("English")));
    // The tolerance is for the rounding of character widths.
    EXPECT_NEAR(twice.width, 2 * once.width, once.width / 10);
    EXPECT_NEAR(twice.height, 2 * once.height, once.height / 10);
}

TEST_F(HelperPlaceTest, Pictures_ForPeopleToLookAt) {
    useScreen("640x480");
    for (const char* language : {"English", "German", "Francais"}) {
        AlertRequest request = requestIn(language);
        const std::string window = show(request);
        const std::string name = std::string("alert-") + language;
        HelperScreen::takePicture(name);
        // A window without its text has only a few colours.
        const std::string colours =
            dovrel::test::readOutput({"identify", "-format", "%k\n", DOVREL_PICTURES "/" + name + ".png"});
        EXPECT_GT(std::atoi(colours.c_str()), 50);
        HelperScreen::pressKey("Escape");
        EXPECT_EQ(lastLine(), pressed(1));
    }
}

}  // namespace
}  // namespace alerthelper::test
