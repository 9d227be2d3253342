// Reads property lists in the binary format. Private to the layer.
//
// This is our own code because libplist 2.2 reads a value again at each reference to it. A list of a hundred
// objects can keep it busy forever.
#pragma once

#include <string_view>

#include "portability/corefoundation/Object.h"

namespace portability {

/// Returns whether the document begins like a binary property list.
bool isBinaryPropertyList(std::string_view document);

/// Returns the value of the document. An object that several others refer to is created only once. Returns
/// an empty holder if any part is damaged, is not allowed in a property list, or is nested more than 128
/// levels deep.
ObjectHolder readBinaryPropertyList(std::string_view document);

}  // namespace portability
