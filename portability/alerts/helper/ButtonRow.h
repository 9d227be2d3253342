// The lower part of an alert: its buttons.
#pragma once

#include <gtk/gtk.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace alerthelper {

/// The row of buttons, in the order of the desktop: the first button is at the right or at the left. The
/// Help button, if there is one, is at the other end. All members must be called on the thread that
/// called gtk_init.
class ButtonRow {
  public:
    /// `pressed` is called with the index of the caption, `help` when the user presses Help. If `help` is
    /// empty, there is no Help button. Neither is called after the row is destroyed.
    ButtonRow(const std::vector<std::string>& captions, std::function<void(size_t)> pressed,
              std::function<void()> help);
    ButtonRow(const ButtonRow&) = delete;
    ButtonRow& operator=(const ButtonRow&) = delete;
    ~ButtonRow();

    // The widgets. The window that contains `whole` owns them.
    GtkWidget* whole() const { return whole_; }
    GtkWidget* button(size_t index) const { return buttons_[index]; }
    GtkWidget* helpButton() const { return helpButton_; }  ///< null if there is none

  private:
    void addHelpButton();
    void addButtons(const std::vector<std::string>& captions);
    static void handleClick(GtkWidget* source, ButtonRow* self);

    std::function<void(size_t)> pressed_;
    std::function<void()> help_;
    GtkWidget* whole_;
    GtkWidget* helpButton_ = nullptr;
    std::vector<GtkWidget*> buttons_;
};

}  // namespace alerthelper
