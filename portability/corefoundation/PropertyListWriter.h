// Writes property lists in the XML format. Private to the layer.
#pragma once

#include <optional>
#include <string>

#include "portability/corefoundation/Object.h"

namespace portability {

/// Returns the XML document for `value`. Returns nothing if any part of it is not allowed in a property list, or if
/// the document would be larger than 16 MiB.
std::optional<std::string> writeXmlPropertyList(const Object& value);

}  // namespace portability
