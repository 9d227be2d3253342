// Writes what the decoder found.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/decode/Decoded.h"

namespace dovrel::tools {

/// Returns lines for people: the kind and size of the input, each item after its offset, and each finding.
/// Offsets are hexadecimal.
std::string toOutputText(const Decoded& decoded);

/// Returns the same as JSON, with all bytes of each item. Offsets and lengths are decimal numbers of bytes.
nlohmann::ordered_json toJson(const Decoded& decoded);

}  // namespace dovrel::tools
