// Reader of property lists in their binary form. Private to the layer.
//
// Own code, because libplist 2.2 reads a value again at each reference to it, so a list of a hundred objects
// can keep it busy forever.
#pragma once

#include <string_view>

#include "portability/corefoundation/Object.h"

namespace portability {

/// Whether the document begins like a binary one.
bool isBinaryPropertyList(std::string_view document);

/// The value of the document. What the document holds once is one object, however often it is referred to.
/// Empty if anything in it is damaged, is not part of a property list, or is nested beyond 128 levels.
ObjectHolder readBinaryPropertyList(std::string_view document);

}  // namespace portability
