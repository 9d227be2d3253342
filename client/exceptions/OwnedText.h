// Copies of NUL-terminated texts that the exceptions own.
#pragma once

#include <memory>

namespace dovrel {

/// Returns a copy of the text, or null if the text is null or empty. Throws std::bad_alloc.
std::unique_ptr<char[]> copyOfText(const char* text);

}  // namespace dovrel
