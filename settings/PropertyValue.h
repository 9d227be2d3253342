// PropertyValue: one typed value of a Properties store, readable as each of the three types. It refers to the
// bytes of a string or byte array but does not own them; they must outlive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "serialization/CPPByteArray.h"

namespace dovrel {

/// The types of a value. The numbers are part of the store's interface.
enum class PropertyType : uint8_t {
    kInteger = 0,
    kString = 1,
    kBinary = 2,
    /// A type word that the grammar does not contain. Such entries are ignored when a text is read.
    kUnknown = 0xFF,
};

/// `type` says which one of the other members is used.
struct PropertyValue {
    PropertyType type = PropertyType::kUnknown;
    int32_t intValue = 0;
    std::string_view stringValue;
    std::string_view binaryValue;

    static PropertyValue ofInt(int32_t value);
    static PropertyValue ofString(std::string_view value);

    /// `bytes` may be null if `length` is 0.
    static PropertyValue ofBinary(const void* bytes, size_t length);

    /// Returns the value as an integer.
    ///
    /// - String: the decimal number at its beginning; 0 if there is none; the nearest 32-bit
    ///   number if it is too large.
    /// - Byte array: its first four bytes in the processor's byte order; missing bytes count as 0.
    /// - Unknown type: 0.
    int32_t asInt() const;

    /// Returns the value as a string: the decimal digits of an integer, one character per byte of a byte
    /// array, and "" for an unknown type.
    std::string asString() const;

    /// Returns the value as bytes: the four bytes of an integer in the processor's byte order, the
    /// characters of a string without a terminator, and no bytes for an unknown type. Throws
    /// std::bad_alloc on allocation failure.
    CPPByteArray asBinary() const;
};

}  // namespace dovrel
