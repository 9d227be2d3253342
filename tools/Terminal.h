// Colours, which the tool writes to terminals and not to files.
#pragma once

#include <string>

namespace dovrel::tools {

/// Returns whether the descriptor is a terminal.
bool isTerminal(int descriptor);

/// Returns whether the tool uses colours on the descriptor: it is a terminal, NO_COLOR is unset or empty, and
/// TERM is not "dumb".
bool showsColours(int descriptor);

enum class Colour { red, green, yellow, bold };

/// Returns the text with the escape sequences of the colour before and after it, or the text alone if `isShown`
/// is false.
std::string paint(const std::string& text, Colour colour, bool isShown);

}  // namespace dovrel::tools
