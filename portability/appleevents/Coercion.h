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

/// Converts a value to another type: whole numbers and booleans among each other, as far as the value fits;
/// whole numbers and decimal text; four-character codes and text. False when there is no such conversion, or
/// no result for this value.
bool coerce(DescType from, const void* data, size_t size, DescType to, CoercedValue& result);

}  // namespace portability
