// One entry of a Properties store: a key and its value, small, because large stores spend most of their time
// in the heap. The bytes of both lie in one block of the entry's own, or in a text that somebody else owns.
//
// Integers and strings lie there as the text form has them, with all that stands around and between them, so
// that saving copies them in one piece.
#pragma once

#include <cstdint>
#include <string_view>

#include "settings/PropertyValue.h"

namespace dovrel {

class PropertyEntry {
  public:
    /// Owns a copy of the key and of the bytes of the value. std::bad_alloc when they find no room; 4 GiB of
    /// either never do.
    PropertyEntry(std::string_view key, const PropertyValue& value);

    /// The entry of an integer or a string that `text` holds: `valueText` is what stands behind the type
    /// word. Both are parts of the text, the key in front, which is not copied and must outlive the entry.
    PropertyEntry(std::string_view text, std::string_view key, PropertyType type, std::string_view valueText);

    /// A copy always owns its bytes.
    PropertyEntry(const PropertyEntry& other);
    PropertyEntry& operator=(const PropertyEntry&) = delete;
    ~PropertyEntry();

    /// Whether the constructor for a text can take the two: it counts the bytes from one to the other in 32
    /// bits.
    static bool canReferTo(std::string_view key, std::string_view valueText);

    /// Both refer to the bytes of the entry.
    std::string_view key() const { return std::string_view(bytes_, keyLength_); }
    PropertyValue value() const;

    /// Key line and value line, line feeds included, where they lie among the bytes of the entry just as they
    /// are saved; empty where they do not, as for byte arrays.
    std::string_view savedForm() const;

    /// The order of entries in a store: that of the bytes of their keys; of two keys with a common beginning
    /// the shorter one comes first.
    struct KeyOrder {
        using is_transparent = void;
        bool operator()(const PropertyEntry& a, const PropertyEntry& b) const { return a.key() < b.key(); }
        bool operator()(const PropertyEntry& a, std::string_view b) const { return a.key() < b; }
        bool operator()(std::string_view a, const PropertyEntry& b) const { return a < b.key(); }
    };

  private:
    const char* newBlock(std::string_view key, std::string_view value) const;
    size_t savedLength() const;

    // The key stands at the beginning, the value at the offset. An integer is kept as its decimal digits, as
    // a text holds it.
    const char* bytes_;
    uint32_t keyLength_;
    uint32_t valueOffset_;
    uint32_t valueLength_;
    PropertyType type_;
    bool ownsBytes_;
    bool liesAsSaved_;
};

}  // namespace dovrel
