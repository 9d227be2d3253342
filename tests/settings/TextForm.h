// Converts stores from and to their text form in one expression.
#pragma once

#include <string>

#include "settings/Properties.h"

namespace dovrel::test {

/// Tells whether the store takes over the text's memory, or copies what it needs.
enum class Text { kGivenAway, kKept };

inline Properties loaded(std::string text, Text mode = Text::kGivenAway) {
    Properties store;
    store.load(text, mode == Text::kKept);
    return store;
}

inline std::string saved(const Properties& store) {
    std::string text;
    store.save(text);
    return text;
}

}  // namespace dovrel::test
