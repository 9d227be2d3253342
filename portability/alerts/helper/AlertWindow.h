// The window of an alert, which looks like the desktop's other windows.
#pragma once

#include <gtk/gtk.h>

#include <cstddef>
#include <functional>

#include "portability/alerts/AlertMessages.h"
#include "portability/alerts/helper/AlertText.h"
#include "portability/alerts/helper/ButtonRow.h"

namespace alerthelper {

/// The first button is the default button (Return). The last button means Cancel (Escape and the window's
/// close button). A single button is both. Page Up and Page Down scroll the text. All members must be called
/// on the thread that called gtk_init.
class AlertWindow {
  public:
    /// Called by GTK's main loop. None of them closes the window.
    struct Handlers {
        std::function<void()> shown;                 ///< once, when the first frame of the window was drawn
        std::function<void()> help;                  ///< each time the user presses Help
        std::function<void(size_t button)> pressed;  ///< with the index of the button
    };

    /// Creates the window without showing it.
    AlertWindow(const portability::AlertRequest& request, Handlers handlers);
    AlertWindow(const AlertWindow&) = delete;
    AlertWindow& operator=(const AlertWindow&) = delete;

    /// Closes the window.
    ~AlertWindow();

    /// Shows the window above the other windows and with the keyboard focus, if the window system
    /// permits this.
    void present();

    GtkWindow* window() const { return window_; }
    const AlertText& text() const { return text_; }
    const ButtonRow& buttons() const { return buttons_; }

  private:
    void describe(const portability::AlertRequest& request);
    void addKeys();
    void watchFirstFrame();
    void pressCancel() { handlers_.pressed(lastButton_); }

    const Handlers handlers_;
    const size_t lastButton_;
    GtkWindow* const window_;
    AlertText text_;
    const ButtonRow buttons_;
    gulong firstFrame_ = 0;
};

}  // namespace alerthelper
