// The size that a text will have on the screen.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace alerthelper {

/// In pixels of the desktop.
struct Size {
    int width = 0;
    int height = 0;
};

/// The size of the text in the widget's font, with no line wider than `longestLine` pixels and each paragraph
/// a layout of its own, as GtkTextView does it. Takes time in proportion to the text, unlike the measuring of
/// a GtkLabel that wraps: that tries many widths, which takes a second for 4,000 characters.
Size textSize(GtkWidget* widget, const std::string& text, int longestLine);

/// The width of an average character in the widget's font, at least 1.
int averageCharacterWidth(GtkWidget* widget);

/// The size that every monitor has at least, because nothing tells beforehand on which one a window will be.
Size smallestMonitor();

}  // namespace alerthelper
