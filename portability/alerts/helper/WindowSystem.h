// Connects the alert helper to the desktop.
#pragma once

namespace alerthelper {

/// Connects to the window system that the environment names (Wayland or X11). Returns false if there is none
/// that can be reached. To be called once, before any other thread reads the environment. Needs neither a
/// session bus, a writable home nor a graphics processor, and starts no other program to get a bus.
bool connectToWindowSystem();

}  // namespace alerthelper
