// The alert's window in the test's own process, where its parts can be looked at.
#pragma once

#include <memory>
#include <vector>

#include "portability/alerts/helper/AlertWindow.h"
#include "tests/support/WaitUntil.h"

namespace alerthelper::test {

/// In pixels of the screen, from the upper left corner of the window.
struct Place {
    int x = 0;
    int y = 0;
};

class ShownWindow {
  public:
    /// Connects to the screen that DISPLAY names, if that has not been done yet, and returns when the window
    /// is there.
    explicit ShownWindow(const portability::AlertRequest& request);

    AlertWindow& window() { return *window_; }

    // The middle of the buttons.
    std::vector<Place> buttonPlaces();
    Place helpPlace() { return middleOf(window_->buttons().helpButton()); }

    /// Lets the window work until the condition holds; false if that does not happen within half a minute.
    template <typename Condition>
    bool workUntil(Condition condition);

    // The presses so far.
    std::vector<size_t> pressed;
    int helps = 0;

  private:
    Place middleOf(GtkWidget* widget);

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
