// A screen with a window manager, and simulated mouse and keyboard input for the alerts on it.
#pragma once

#include <string>
#include <vector>

#include "tests/support/Screen.h"
#include "tests/support/WindowManager.h"

namespace dovrel::test {

/// The look of alerts: how xdotool finds their windows, and where their buttons are, in pixels.
struct AlertLook {
    std::vector<std::string> search;
    int fromRight;     ///< from the window's right edge to the middle of the first button
    int fromBottom;    ///< from the lower edge to the middle of the buttons
    int step;          ///< from the first button to the next one on its left
    int helpFromLeft;  ///< from the window's left edge to the middle of the Help button
};

/// Both functions return a look: that of the alert helper's alerts, and that of GNUstep's window classes.
const AlertLook& helperAlerts();
const AlertLook& gnustepAlerts();

class Desktop {
  public:
    /// Returns when the window manager is ready. While the object exists, DISPLAY names the screen.
    explicit Desktop(const AlertLook& look = helperAlerts());

    /// Waits until an alert is open, has the keyboard focus and no longer moves. Returns its window, or "" if
    /// no alert opens within a minute.
    std::string waitForAlert();

    /// Returns the windows of the alerts that are open now.
    std::vector<std::string> alerts() const;

    /// Returns the text in the title bar of the window.
    static std::string readTitle(const std::string& window);

    /// Both functions use the alert that is open, or wait for one. They repeat the click or key until its
    /// window is gone, and return false if it stays. Buttons are counted from the right, starting at 0.
    bool clickButton(int fromRight);
    bool pressKey(const std::string& key);

    /// Waits for an alert and clicks where its Help button is, or would be.
    void clickHelp();

    /// Returns the greatest number of alerts that were open at the same time.
    size_t mostAlerts() const { return mostAlerts_; }

    /// Waits until an alert shows something and no longer changes, then saves a picture of the screen for
    /// people to look at, as pictures/NAME.png in the build folder. Returns false if that does not happen.
    bool takePicture(const std::string& name);

    /// Ends the screen while windows are still on it.
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
