// Replaces every occurrence of one text in another text.
#pragma once

#include <string>
#include <string_view>

namespace dovrel {

/// Returns a copy of `text` with every `from` replaced by `to`. It searches from left to right
/// and does not search the inserted text again. `from` must not be empty. The time is
/// proportional to the size of the text.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

}  // namespace dovrel
