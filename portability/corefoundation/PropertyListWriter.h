// Writes property lists in the XML format. Private to the layer.
#pragma once

#include <optional>
#include <string>

#include "portability/corefoundation/Object.h"

namespace portability {

/// Returns the XML document for `value`. Returns nothing if any part of it is not allowed in a property list.
std::optional<std::string> writeXmlPropertyList(const Object& value);

}  // namespace portability
