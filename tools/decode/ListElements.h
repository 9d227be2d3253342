// Gives the parts of a byte array list their meaning.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/decode/Decoded.h"

namespace dovrel::tools {

/// Names the parts of a byte array list: the number of elements and the elements. Adds a problem to `result` if
/// the number or an element is missing, and a note for each part that the list does not use. `end` and
/// `isComplete` are as for describeFields. Returns a summary: "2 elements".
std::string describeElements(std::vector<DecodedItem>& parts, uint32_t end, bool isComplete, Decoded& result);

}  // namespace dovrel::tools
