// Reads property lists in the old text format. Files of localized strings have the same format. Private to
// the layer.
//
// This is our own code because libplist reads this format only from version 2.3 on.
#pragma once

#include <string_view>

#include "portability/corefoundation/Object.h"

namespace portability {

/// Returns the value of a document in UTF-8. Returns an empty holder if the document is damaged or nested
/// more than 128 levels deep.
ObjectHolder readOldStylePropertyList(std::string_view document);

/// Returns the dictionary of a file of localized strings. The format is that of a dictionary without the
/// surrounding braces. The value of a key without a value is the key itself. Returns an empty holder if the
/// file is damaged.
ObjectHolder readStringsFile(std::string_view document);

}  // namespace portability
