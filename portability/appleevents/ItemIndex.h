// The positions of an image's first items. Private to the layer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "portability/appleevents/EventImage.h"

namespace portability {

/// Keeps the checked headers of the first items of an image, so that a search does not read the image again.
/// That is faster, and another process that changes the image meanwhile cannot change them. Further items are
/// searched for in the image. The functions take the image each time, because its memory can move.
class ItemIndex {
  public:
    /// User-provided, so that `ItemIndex()` does not zero-fill the entries.
    ItemIndex() {}

    /// Replaces the content by the items of the image. Returns whether the image is whole: no item is damaged or
    /// of an unknown kind, and there are at most kMostItems items.
    bool read(const uint8_t* image, size_t size);

    /// Finds the first item with this kind and keyword. Returns false if there is none.
    bool find(const uint8_t* image, size_t size, ItemKind kind, uint32_t keyword, ImageItem& item) const;

    /// Returns the number of items, including those that are not kept here.
    uint32_t count() const { return count_; }

    /// Must be called for each item that is added after the last item of the image, at the offset `begin`.
    void add(const ItemHeader& header, size_t begin) {
        ++count_;
        if (kept_ == kEntries) return;
        entries_[kept_++] = {header, static_cast<uint32_t>(begin)};
        end_ = begin + itemSpace(header.size);
    }

    /// Must be called if an item that find() returned gets another header and the same space.
    void replace(const ImageItem& item, const ItemHeader& header);

  private:
    struct Entry {
        ItemHeader header;
        uint32_t begin;
    };
    static constexpr uint32_t kEntries = 8;

    std::array<Entry, kEntries> entries_;
    uint32_t kept_ = 0;   // number of entries
    uint32_t count_ = 0;  // number of items
    size_t end_ = 0;      // offset of the first byte after the kept items
};

}  // namespace portability
