// The image of an Apple event: a sequence of bytes in which it is both stored and sent. Private to the layer.
//
//     item: keyword, type, size of the data, kind      4 numbers of 32 bits, in the machine's byte order
//           data, padded with zero bytes to a multiple of 8
//
// An image is any number of items, which are attributes or parameters. It contains nothing before,
// between or after the items. An image may be in memory that another process can change at any time.
// Therefore each number is read once and checked before use. Where it is needed again, either the checked
// number is kept (ItemIndex.h), or it is read and checked again.
#pragma once

#include <cstddef>
#include <cstdint>

#include "portability/transport/MessageMemory.h"

namespace portability {

/// The largest number of items. An image with more is treated as damaged.
constexpr uint32_t kMostItems = 4096;

enum class ItemKind : uint32_t { attribute = 1, parameter = 2 };

struct ItemHeader {
    uint32_t keyword;
    uint32_t type;
    uint32_t size;  // bytes of data, without the padding
    uint32_t kind;  // an ItemKind
};
static_assert(sizeof(ItemHeader) == 16, "data begins at a multiple of 8");

/// Returns the size in bytes of an item with `dataSize` bytes of data (at most kLargestMessage).
constexpr size_t itemSpace(size_t dataSize) {
    return sizeof(ItemHeader) + ((dataSize + 7) & ~size_t{7});
}

/// One item of an image, whose header has been checked. Points into the image.
struct ImageItem {
    ItemHeader header;
    const uint8_t* data;
    size_t begin;    // offset of the item in the image
    size_t end;      // offset of the first byte after the item's padding
    uint32_t index;  // number of items before this one
};

/// Iterates over the items of an image.
class ImageWalker {
  public:
    ImageWalker(const uint8_t* image, size_t size) : image_(image), size_(size) {}

    /// Starts at the item with this offset and this index.
    ImageWalker(const uint8_t* image, size_t size, size_t begin, uint32_t index)
        : image_(image), size_(size), at_(begin), index_(index) {}

    /// Reads the next item. Returns false at the end and at the first damaged item. Inline, because it is called
    /// for every item of every event.
    bool next(ImageItem& item) {
        if (size_ - at_ < sizeof(ItemHeader) || index_ == kMostItems) return false;
        item.header = readHeader(image_ + at_);
        const size_t space = size_ - at_;
        if (item.header.size > space || itemSpace(item.header.size) > space) return false;
        if (!isKnownKind(item.header.kind)) return false;
        item.data = image_ + at_ + sizeof(ItemHeader);
        item.begin = at_;
        item.end = at_ + itemSpace(item.header.size);
        item.index = index_;
        at_ = item.end;
        ++index_;
        return true;
    }

    /// Reads items up to one with this kind and keyword. Returns false if there is none.
    bool find(ItemKind kind, uint32_t keyword, ImageItem& item);

    /// Returns whether the whole image was read and no item was damaged.
    bool atEnd() const { return at_ == size_; }

  private:
    // The compiler may repeat a plain read after the check, and the second read may return another value.
    static uint32_t readOnce(const uint8_t* place) {
        return __atomic_load_n(reinterpret_cast<const uint32_t*>(place), __ATOMIC_RELAXED);
    }

    static ItemHeader readHeader(const uint8_t* place) {
        return {readOnce(place), readOnce(place + 4), readOnce(place + 8), readOnce(place + 12)};
    }

    static bool isKnownKind(uint32_t kind) {
        return kind == static_cast<uint32_t>(ItemKind::attribute) ||
               kind == static_cast<uint32_t>(ItemKind::parameter);
    }

    const uint8_t* image_;
    size_t size_;
    size_t at_ = 0;
    uint32_t index_ = 0;
};

/// Writes everything except the data of an item. `place` must have room for itemSpace(header.size) bytes.
void prepareItem(uint8_t* place, const ItemHeader& header);

/// Writes an item. `place` must have the same room.
void writeItem(uint8_t* place, const ItemHeader& header, const void* data);

}  // namespace portability
