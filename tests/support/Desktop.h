// A screen with a window manager, and a hand that uses mouse and keyboard on the alerts there.
#pragma once

#include <string>
#include <vector>

#include "tests/support/Screen.h"
#include "tests/support/WindowManager.h"

namespace dovrel::test {

/// How alerts look: by what the tool finds their windows, and where their buttons are, in pixels.
struct AlertLook {
    std::vector<std::string> search;
    int fromRight;     ///< from the window's right edge to the middle of the first button
    int fromBottom;    ///< from the lower edge to the middle of the buttons
    int step;          ///< from the first button to the next one at its left
    int helpFromLeft;  ///< from the window's left edge to the middle of the Help button
};

/// Those of the helper, and those of GNUstep's window classes.
const AlertLook& helperAlerts();
const AlertLook& gnustepAlerts();

class Desktop {
  public:
    /// Returns when the window manager works. While the object lives, DISPLAY names the screen.
    explicit Desktop(const AlertLook& look = helperAlerts());

    /// Waits until an alert is open, has the keyboard and does not move any more; answers its window, "" when
    /// none comes within half a minute.
    std::string waitForAlert();

    /// The windows of the alerts that are open now.
    std::vector<std::string> alerts() const;

    /// The text in the title bar of the window.
    static std::string titleOf(const std::string& window);

    // Answers the alert that is open, or comes: uses it until its window is gone. False when that does not
    // happen. Buttons are counted from the right, 0 is the first.
    bool clickButton(int fromRight);
    bool pressKey(const std::string& key);

    /// Clicks where the Help button is, or would be, in the alert that is open, or comes.
    void clickHelp();

    /// The greatest number of alerts that have been seen at one time.
    size_t mostAlerts() const { return mostAlerts_; }

    /// Waits for an alert and takes a picture of the screen for people to look at, pictures/NAME.png in the
    /// build folder, once there is something in the alert that does not change any more. False when that does
    /// not happen.
    bool takePicture(const std::string& name);

    /// Takes the screen away from under its windows.
    void end() { screen_.end(); }

  private:
    template <typename Use>
    bool answer(const Use& use);
    void click(const std::string& window, int fromLeft) const;
    bool isOpen(const std::string& window, const std::string& process) const;
    bool closes(const std::string& window, const std::string& process) const;

    const AlertLook& look_;
    Screen screen_;
    WindowManager windowManager_;
    mutable size_t mostAlerts_ = 0;
};

}  // namespace dovrel::test
