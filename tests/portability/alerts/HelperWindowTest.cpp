// Keys and clicks in the alert helper's window, and windows that are ended from outside.
#include "tests/portability/alerts/HelperWindowTest.h"

#include <csignal>

#include "tests/portability/alerts/ShownWindow.h"
#include "tests/support/ChildProcess.h"

namespace alerthelper::test {
namespace {

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
    // From Retry over heading, body and Help to Cancel.
    for (const char* key : {"Tab", "Tab", "Tab", "space"})
        HelperScreen::pressKey(key);
    EXPECT_EQ(helper_->readLine(), kHelp);
    HelperScreen::pressKey("Tab");
    HelperScreen::pressKey("Return");
    EXPECT_EQ(lastLine(), pressed(1));
}

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

TEST_F(HelperWindowTest, HostThatClosesTheStream_ClosesTheWindow) {
    show(requestIn("English"));
    helper_->closeStream();
    EXPECT_EQ(helper_->wait(), kFinished);
    EXPECT_TRUE(HelperScreen::windowGoes());
}

TEST_F(HelperWindowTest, HostThatIsKilledWhileAnotherProcessKeepsTheStream_ClosesTheWindow) {
    dovrel::test::ChildProcess host({"sleep", "1000"});
    AlertRequest request = requestIn("English");
    request.host = std::stoi(
        dovrel::test::readOutput({"pgrep", "--newest", "--parent", std::to_string(getpid()), "sleep"}));
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

}  // namespace
}  // namespace alerthelper::test
