// Puts a window above the others.
#pragma once

#include <gtk/gtk.h>

namespace alerthelper {

// On Wayland none of these does anything: there the compositor alone decides, and gives a new window the
// keyboard.

/// Marks a realized window that is not shown yet as a dialog that the user is to see at once.
void prepareOnTop(GtkWindow* window);

/// Asks the window manager to keep a shown window above the others. Without a window manager, as on a machine
/// with one program, puts the window into the middle of the screen and gives it the keyboard.
void putOnTop(GtkWindow* window);

}  // namespace alerthelper
