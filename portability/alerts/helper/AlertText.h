// The upper part of an alert: a warning sign, the title as heading, and the body.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace alerthelper {

/// A body that does not fit on the smallest monitor scrolls in a frame of its own. Heading and body can be
/// selected. All members are for the thread that called gtk_init.
class AlertText {
  public:
    AlertText(const std::string& title, const std::string& body);

    /// Measures the texts. To be called once, when `whole` is in its window and has its style from there.
    void fitToScreen();

    // The parts, which belong to the window that `whole` is put into.
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
