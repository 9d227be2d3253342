// The upper part of an alert: a warning sign, the title as heading, and the body.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace alerthelper {

/// Shows the title and the body of an alert. A body that does not fit on the smallest monitor scrolls in its
/// own frame. The user can select text in the heading and the body. All members must be called on the thread
/// that called gtk_init.
class AlertText {
  public:
    AlertText(const std::string& title, const std::string& body);

    /// Measures the texts. Must be called once, after `whole` was added to its window, because the window
    /// determines its style.
    void fitToScreen();

    // The widgets. The window that contains `whole` owns them.
    GtkWidget* whole() const { return whole_; }
    GtkWidget* sign() const { return sign_; }
    GtkWidget* heading() const { return heading_; }
    GtkWidget* body() const { return body_; }
    GtkWidget* scroller() const { return scroller_; }

    void scrollPage(GtkScrollType direction) const;

  private:
    void putTogether();
    void makeBodyScroll();

    const std::string title_;
    const std::string text_;
    GtkWidget* whole_;
    GtkWidget* sign_;
    GtkWidget* heading_;
    GtkWidget* body_;
    GtkWidget* scroller_;
};

}  // namespace alerthelper
