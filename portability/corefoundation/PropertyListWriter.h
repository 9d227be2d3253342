// Writer of property lists in their XML form. Private to the layer.
#pragma once

#include <optional>
#include <string>

#include "portability/corefoundation/Object.h"

namespace portability {

/// The document of `value`; nothing if a part of it cannot be in a property list.
std::optional<std::string> writeXmlPropertyList(const Object& value);

}  // namespace portability
