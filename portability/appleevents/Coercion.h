// Conversions between the types of descriptors. Private to the layer.
#pragma once

#include <CoreServices/AEDataModel.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace portability {

/// A converted value.
struct CoercedValue {
    std::array<uint8_t, 24> bytes;
    size_t size = 0;
};

/// Converts a value to another type. Supported conversions:
/// - between whole numbers and booleans, if the value fits
/// - between whole numbers and decimal text
/// - between four-character codes, and between these and text
///
/// Returns false if there is no such conversion or if it has no result for this value.
bool coerce(DescType from, const void* data, size_t size, DescType to, CoercedValue& result);

}  // namespace portability
