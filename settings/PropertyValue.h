// One typed value of a Properties store, readable as each of the three types.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "serialization/CPPByteArray.h"
#include "settings/PropertyType.h"

namespace dovrel {

/// The type tells which one of the other members counts. Values are copied and moved but not assigned,
/// because the assignment of a byte array passes over empty ones.
struct PropertyValue {
    explicit PropertyValue(int32_t value);
    explicit PropertyValue(std::string_view value);

    /// Copies `length` bytes; `bytes` may be null when there are none. std::bad_alloc when they find no room.
    PropertyValue(const void* bytes, size_t length);

    PropertyValue(const PropertyValue&) = default;
    PropertyValue(PropertyValue&&) = default;
    PropertyValue& operator=(const PropertyValue&) = delete;
    PropertyValue& operator=(PropertyValue&&) = delete;
    ~PropertyValue() = default;

    /// A string gives the decimal number at its front (0 where there is none, the nearest number that fits
    /// where it is too large); bytes give their first four in the processor's order, missing ones counting as
    /// 0.
    int32_t asInt() const;

    /// An integer gives its decimal digits; bytes give one character each; an unknown type gives "".
    std::string asString() const;

    /// An integer gives its four bytes in the processor's order; a string its characters without a
    /// terminator; an unknown type gives no bytes. std::bad_alloc when they find no room.
    CPPByteArray asBinary() const;

    PropertyType type = PropertyType::kUnknown;
    int32_t intValue = 0;
    std::string stringValue;
    CPPByteArray binaryValue;
};

}  // namespace dovrel
