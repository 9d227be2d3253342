// Follows the desktop's choice of dark or light windows.
#pragma once

namespace alerthelper {

/// Makes the windows of this process dark or light as the user prefers, now and whenever the preference
/// changes. It reads the desktop's settings portal, because GTK 4.8 itself uses only the name of the theme.
/// If no portal is running, or it does not reply soon, only the theme decides. Must be called after gtk_init.
void followColorScheme();

}  // namespace alerthelper
