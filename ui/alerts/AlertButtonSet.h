// The button sets of alerts: the texts on the buttons, and the answer that each button means.
#pragma once

namespace dovrel {

struct AlertButtonSet {
    const char* firstKey;   ///< key of the text on the first button
    const char* secondKey;  ///< key of the text on the second button; null if there is only one button
    int firstAnswer;        ///< the AlertAnswer when the user presses the first button
};

/// Returns the button set for a value of AlertButtons. For every other number it returns OK alone.
AlertButtonSet alertButtonSet(int buttons);

/// Returns the AlertAnswer when the user presses a button of that set.
int alertAnswer(const AlertButtonSet& set, bool pressedFirst);

}  // namespace dovrel
