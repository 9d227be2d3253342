// Runs one alert with the platform's window classes.
#pragma once

namespace dovrel {

/// The texts are NUL-terminated, in UTF-8. The caller owns them.
struct ModalAlert {
    const char* title;
    const char* body;
    const char* firstButton;   ///< caption of the default button
    const char* secondButton;  ///< null if there is no second button
    void (*openHelp)();        ///< called when the user presses Help; null if there is no Help button
};

/// Shows the alert and blocks until it ends. Sets `*pressedFirst` to whether the first button was pressed; a
/// host can end an alert without any button. Returns false, without changing `*pressedFirst`, if the alert
/// cannot be shown. Does not throw. Must be called on the main thread, or on a thread on which the platform can
/// run alerts.
bool runModalAlert(const ModalAlert& alert, bool* pressedFirst) noexcept;

}  // namespace dovrel
