// Shows entries to people.
#pragma once

#include <string>

#include "tools/properties/EntryList.h"

namespace dovrel::tools {

/// Returns one line of UTF-8 without a line feed: delay = 5, name = "text", or key = 2 bytes: 00 FF.
std::string entryText(const TextEntry& entry);

/// Returns the value alone: a decimal number, the bytes of a string as they are stored, or hexadecimal digits.
std::string bareValue(const TextEntry& entry);

}  // namespace dovrel::tools
