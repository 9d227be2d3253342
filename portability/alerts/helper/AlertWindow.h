// The window of an alert, in the look of the desktop.
#pragma once

#include <gtk/gtk.h>

#include <cstddef>
#include <functional>

#include "portability/alerts/AlertMessages.h"
#include "portability/alerts/helper/AlertText.h"
#include "portability/alerts/helper/ButtonRow.h"

namespace alerthelper {

/// The first button is the default one (Return), the last means Cancel (Escape, and the close button of the
/// window); a single button is both. Page Up and Page Down scroll. All members are for the thread that called
/// gtk_init.
class AlertWindow {
  public:
    /// Called by GTK's main loop. The window stays open in any case.
    struct Handlers {
        std::function<void()> shown;                 ///< once, when the window has its first picture
        std::function<void()> help;                  ///< at each press of Help
        std::function<void(size_t button)> pressed;  ///< with the index of the caption
    };

    /// Makes the window, without showing it yet.
    AlertWindow(const portability::AlertRequest& request, Handlers handlers);
    AlertWindow(const AlertWindow&) = delete;
    AlertWindow& operator=(const AlertWindow&) = delete;

    /// Closes the window.
    ~AlertWindow();

    /// Puts the window on the screen, above the others and with the keyboard, as far as the window system
    /// lets it.
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
