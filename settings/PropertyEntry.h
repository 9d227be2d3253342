// One entry of a Properties store: a key and its value. The entry owns all bytes of both, in one block,
// because stores with a hundred thousand entries spend most of their time in the heap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "settings/PropertyValue.h"

namespace dovrel {

class PropertyEntry {
  public:
    /// Copies the key and the bytes of the value. std::bad_alloc when they find no room; 4 GiB of either
    /// never do.
    PropertyEntry(std::string_view key, const PropertyValue& value);
    PropertyEntry(const PropertyEntry& other);
    PropertyEntry& operator=(const PropertyEntry&) = delete;

    /// Both refer to bytes of the entry.
    std::string_view key() const { return std::string_view(bytes_.get(), keyLength_); }
    PropertyValue value() const;

    /// The order of entries in a store: that of the bytes of their keys; of two keys with a common beginning
    /// the shorter one comes first.
    struct KeyOrder {
        using is_transparent = void;
        bool operator()(const PropertyEntry& a, const PropertyEntry& b) const { return a.key() < b.key(); }
        bool operator()(const PropertyEntry& a, std::string_view b) const { return a.key() < b; }
        bool operator()(std::string_view a, const PropertyEntry& b) const { return a < b.key(); }
    };

  private:
    std::unique_ptr<char[]> bytes_;  // the key, behind it the integer, string or byte array
    uint32_t keyLength_;
    uint32_t valueLength_;
    PropertyType type_;
};

}  // namespace dovrel
