// The button sets of alerts: what stands on the buttons, and what pressing one means.
#pragma once

namespace dovrel {

struct AlertButtonSet {
    const char* firstKey;   ///< key of the text on the first button
    const char* secondKey;  ///< the same of the second; null where there is none
    int firstAnswer;        ///< of AlertAnswer, when the first button is pressed
};

/// The set for one of AlertButtons; every other number is OK alone.
AlertButtonSet alertButtonSet(int buttons);

/// What an alert with that set answers when a button is pressed.
int alertAnswer(const AlertButtonSet& set, bool pressedFirst);

}  // namespace dovrel
