// Converts version texts to numbers. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <string_view>

namespace portability {

/// Converts a version text to a packed number. From the most significant byte on, it contains:
/// - one byte: the major version in two decimal digits
/// - one byte: the minor and the bug-fix version, one decimal digit each
/// - one byte: the stage
/// - one byte: the build
///
/// Returns 0 if the text has another form or more than 10 characters.
UInt32 packedVersion(std::string_view version);

}  // namespace portability
