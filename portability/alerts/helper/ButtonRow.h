// The lower part of an alert: its buttons.
#pragma once

#include <gtk/gtk.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace alerthelper {

/// The buttons in the order of the desktop, which has the first one at the right or at the left; a Help
/// button, if there is one, at the other end. All members are for the thread that called gtk_init.
class ButtonRow {
  public:
    /// `pressed` is called with the index of the caption. Without `help` there is no Help button. Neither is
    /// called after the end of the row.
    ButtonRow(const std::vector<std::string>& captions, std::function<void(size_t)> pressed,
              std::function<void()> help);
    ButtonRow(const ButtonRow&) = delete;
    ButtonRow& operator=(const ButtonRow&) = delete;
    ~ButtonRow();

    // The parts, which belong to the window that `whole` is put into.
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
