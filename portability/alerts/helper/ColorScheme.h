// Whether the desktop is dark or light.
#pragma once

namespace alerthelper {

/// Lets the windows of this process be dark if the user prefers that, now and whenever it changes. Asks the
/// desktop's settings portal, because GTK 4.8 itself follows the name of the theme only. Without a portal
/// that runs and replies soon, the theme alone decides. To be called after gtk_init.
void followColorScheme();

}  // namespace alerthelper
