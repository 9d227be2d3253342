// Measures that all parts of an alert use.
#pragma once

#include <gtk/gtk.h>

namespace alerthelper {

// In logical pixels, each of which is several pixels of a magnified screen.
constexpr int kMargin = 18;
constexpr int kSpacing = 10;

/// Sets the space around a widget.
inline void setMargins(GtkWidget* widget, int atSides, int above, int below) {
    gtk_widget_set_margin_start(widget, atSides);
    gtk_widget_set_margin_end(widget, atSides);
    gtk_widget_set_margin_top(widget, above);
    gtk_widget_set_margin_bottom(widget, below);
}

}  // namespace alerthelper
