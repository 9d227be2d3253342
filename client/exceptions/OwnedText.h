// A copied, owned, zero-terminated text, as the exceptions hold theirs.
#pragma once

#include <memory>

namespace dovrel {

/// Null for null and for an empty text.
std::unique_ptr<char[]> copyOfText(const char* text);

}  // namespace dovrel
