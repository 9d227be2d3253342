#include "tools/Terminal.h"

#include <unistd.h>

#include <cstdlib>

namespace dovrel::tools {

namespace {

std::string readVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

const char* escapeSequence(Colour colour) {
    switch (colour) {
        case Colour::red:
            return "\x1b[31m";
        case Colour::green:
            return "\x1b[32m";
        case Colour::yellow:
            return "\x1b[33m";
        case Colour::bold:
            break;
    }
    return "\x1b[1m";
}

}  // namespace

bool isTerminal(int descriptor) {
    return isatty(descriptor) == 1;
}

bool showsColours(int descriptor) {
    return isTerminal(descriptor) && readVariable("NO_COLOR").empty() && readVariable("TERM") != "dumb";
}

std::string paint(const std::string& text, Colour colour, bool isShown) {
    return isShown ? escapeSequence(colour) + text + "\x1b[0m" : text;
}

}  // namespace dovrel::tools
