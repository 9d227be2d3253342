// Replacing every occurrence of one text in another.
#pragma once

#include <string>
#include <string_view>

namespace dovrel {

/// A copy of `text` with `to` in place of every `from`, found from left to right; what was put in is not
/// searched again. `from` must not be empty. Takes time in proportion to the size of the text.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);

}  // namespace dovrel
