// The alert's window in the test's own process, where its parts can be inspected.
#pragma once

#include <memory>
#include <vector>

#include "portability/alerts/helper/AlertWindow.h"
#include "tests/support/WaitUntil.h"

namespace alerthelper::test {

/// A position in pixels of the screen, from the upper left corner of the window.
struct Place {
    int x = 0;
    int y = 0;
};

class ShownWindow {
  public:
    /// Connects to the screen that DISPLAY names, unless it is connected already.
    /// Returns when the window is open.
    explicit ShownWindow(const portability::AlertRequest& request);

    AlertWindow& window() { return *window_; }

    /// Returns the middle of each button.
    std::vector<Place> buttonPlaces();
    Place helpPlace() { return getMiddle(window_->buttons().helpButton()); }

    /// Runs the window's main loop until the condition holds; returns false if it
    /// does not hold within a minute.
    template <typename Condition>
    bool workUntil(Condition condition);

    /// The buttons that have been pressed so far.
    std::vector<size_t> pressed;
    int helps = 0;

  private:
    Place getMiddle(GtkWidget* widget);

    const size_t buttonCount_;
    bool isShown_ = false;
    std::unique_ptr<AlertWindow> window_;
};

template <typename Condition>
bool ShownWindow::workUntil(Condition condition) {
    return dovrel::test::waitUntil([&] {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        return condition();
    });
}

}  // namespace alerthelper::test
