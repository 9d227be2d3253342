// The types of a property's value. The numbers are part of the store's interface.
#pragma once

#include <cstdint>

namespace dovrel {

enum class PropertyType : uint8_t {
    kInteger = 0,
    kString = 1,
    kBinary = 2,
    /// A type word that the grammar does not contain. Such entries are ignored when a text is read.
    kUnknown = 0xFF,
};

}  // namespace dovrel
