// PropertyEntry: one entry of a Properties store: a key and its value. It is small, because large stores
// spend most of their time in heap allocation. The bytes of key and value are in one block that the entry
// owns, or in a text that it does not own.
//
// Integers and strings are stored exactly as in the text form, including the marks before and between key and
// value. So saving an entry copies one piece.
#pragma once

#include <cstdint>
#include <string_view>

#include "settings/PropertyValue.h"

namespace dovrel {

class PropertyEntry {
  public:
    /// Copies the key and the bytes of the value, and owns the copy. Throws std::bad_alloc on allocation
    /// failure, and always if one of them has 4 GiB or more.
    PropertyEntry(std::string_view key, const PropertyValue& value);

    /// Makes an entry that refers to `text` and copies nothing. For integers and strings only.
    /// `key` and `valueText` (the text after the type word) are parts of `text`, the key first.
    /// `text` must outlive the entry.
    PropertyEntry(std::string_view text, std::string_view key, PropertyType type, std::string_view valueText);

    /// The copy always owns its bytes.
    PropertyEntry(const PropertyEntry& other);
    PropertyEntry& operator=(const PropertyEntry&) = delete;
    ~PropertyEntry();

    /// Returns whether the constructor above can refer to `key` and `valueText`: the distance from the first
    /// byte of the key to the end of the value must fit into 32 bits.
    static bool canReferTo(std::string_view key, std::string_view valueText);

    /// Both results refer to bytes of the entry or of its text.
    std::string_view key() const { return std::string_view(bytes_, keyLength_); }
    PropertyValue value() const;

    /// Returns key line and value line including their line feeds, if the entry's bytes are stored as they
    /// are saved. Otherwise returns an empty view (always for byte arrays).
    std::string_view savedForm() const;

    /// The order of entries in a store: by the bytes of their keys. If one key is the beginning of another,
    /// the shorter key comes first.
    struct KeyOrder {
        using is_transparent = void;
        bool operator()(const PropertyEntry& a, const PropertyEntry& b) const { return a.key() < b.key(); }
        bool operator()(const PropertyEntry& a, std::string_view b) const { return a.key() < b; }
        bool operator()(std::string_view a, const PropertyEntry& b) const { return a < b.key(); }
    };

  private:
    const char* newBlock(std::string_view key, std::string_view value) const;
    size_t savedLength() const;

    // The address of the key. The value is valueOffset_ bytes after it. An integer is stored as decimal
    // digits, as in the text form.
    const char* bytes_;
    uint32_t keyLength_;
    uint32_t valueOffset_;
    uint32_t valueLength_;
    PropertyType type_;
    bool ownsBytes_;
    bool isStoredAsSaved_;
};

}  // namespace dovrel
