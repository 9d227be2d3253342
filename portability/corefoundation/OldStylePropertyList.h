// Reader of property lists in their old text form, which is also that of files of localized strings. Private
// to the layer.
//
// Own code, because libplist reads this form only from version 2.3 on.
#pragma once

#include <string_view>

#include "portability/corefoundation/Object.h"

namespace portability {

/// The value of a document in UTF-8. Empty if it is damaged or nested beyond 128 levels.
ObjectHolder readOldStylePropertyList(std::string_view document);

/// The dictionary of a file of localized strings: the same form without the braces around it. A key without a
/// value stands for itself. Empty if it is damaged.
ObjectHolder readStringsFile(std::string_view document);

}  // namespace portability
