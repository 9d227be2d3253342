// Puts a window above the others.
#pragma once

#include <gtk/gtk.h>

namespace alerthelper {

// On Wayland these functions do nothing: only the compositor decides, and a new window receives the
// keyboard focus.

/// Marks a window as a dialog that the user must see at once. The window must be realized and not shown yet.
void prepareOnTop(GtkWindow* window);

/// Requests from the window manager that a shown window stays above the others. Some computers have no window
/// manager, for example those that run a single program. There the function moves the window to the middle of
/// the screen and sets the keyboard focus to it.
void putOnTop(GtkWindow* window);

}  // namespace alerthelper
