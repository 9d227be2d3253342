// Formats values of property lists as Foundation does.
#pragma once

#include <optional>
#include <string>

namespace dovrel {

/// Returns the value of a property list as Foundation's "%@" formats it, in UTF-8. `list` is a complete list in
/// one of the text forms, in UTF-8. Returns nothing if Foundation cannot parse it or is not available. Throws
/// std::bad_alloc if memory runs out. Any thread.
std::optional<std::string> formatPropertyList(const std::string& list);

}  // namespace dovrel
