// Connects the alert helper to the desktop.
#pragma once

namespace alerthelper {

/// Connects to the window system that the environment names (Wayland or X11). Returns false if it cannot be
/// reached. Must be called once, before any other thread reads the environment.
///
/// The function works without a session bus, a writable home folder or a graphics processor. It does not
/// start a session bus.
bool connectToWindowSystem();

}  // namespace alerthelper
