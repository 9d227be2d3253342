// One typed value of a Properties store, readable as each of the three types. It refers to the bytes of a
// string or byte array and does not own them: they must outlive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "serialization/CPPByteArray.h"
#include "settings/PropertyType.h"

namespace dovrel {

/// The type tells which one of the other members counts.
struct PropertyValue {
    PropertyType type = PropertyType::kUnknown;
    int32_t intValue = 0;
    std::string_view stringValue;
    std::string_view binaryValue;

    static PropertyValue ofInt(int32_t value);
    static PropertyValue ofString(std::string_view value);

    /// `bytes` may be null when `length` is 0.
    static PropertyValue ofBinary(const void* bytes, size_t length);

    /// A string gives the decimal number at its front (0 where there is none, the nearest number that fits
    /// where it is too large); bytes give their first four in the processor's order, missing ones counting as
    /// 0.
    int32_t asInt() const;

    /// An integer gives its decimal digits; bytes give one character each; an unknown type gives "".
    std::string asString() const;

    /// An integer gives its four bytes in the processor's order; a string its characters without a
    /// terminator; an unknown type gives no bytes. std::bad_alloc when they find no room.
    CPPByteArray asBinary() const;
};

}  // namespace dovrel
