// Versions as numbers. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <string_view>

namespace portability {

/// A version text as a packed number, from its highest byte: major version in two decimal digits, minor and
/// bug-fix version in one each, stage, build. 0 for a text of another form or of more than 10 characters.
UInt32 packedVersion(std::string_view version);

}  // namespace portability
