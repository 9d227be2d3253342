// Measures the size of texts on the screen.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace alerthelper {

/// In logical pixels.
struct Size {
    int width = 0;
    int height = 0;
};

/// Returns the size of the text in the widget's font. No line is wider than `longestLine` pixels, and
/// each paragraph has its own layout, as in GtkTextView. The time is proportional to the length of the
/// text. Measuring a wrapping GtkLabel is slower because it tries many widths: it takes a second for
/// 4,000 characters.
Size textSize(GtkWidget* widget, const std::string& text, int longestLine);

/// Returns the width of an average character in the widget's font, at least 1.
int averageCharacterWidth(GtkWidget* widget);

/// Returns the size that fits on every monitor, because it is not known in advance on which monitor a window
/// will be.
Size smallestMonitor();

}  // namespace alerthelper
