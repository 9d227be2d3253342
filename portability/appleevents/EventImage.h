// An Apple event as one run of bytes: what a descriptor stores is what travels. Private to the layer.
//
//     item: keyword, type, size of the data, kind      4 numbers of 32 bits, in the machine's byte order
//           data, filled up with zero bytes to a multiple of 8
//
// An image is any number of items, attributes and parameters alike, with nothing before, between or after
// them. It may lie in memory that another process can change at any moment. Therefore each number is read
// once and checked before it is used, whenever an item is looked for, and not only when the image comes in.
#pragma once

#include <cstddef>
#include <cstdint>

#include "portability/transport/ImageMemory.h"

namespace portability {

/// The largest number of items; more make an image damaged.
constexpr uint32_t kMostItems = 4096;

enum class ItemKind : uint32_t { attribute = 1, parameter = 2 };

struct ItemHeader {
    uint32_t keyword;
    uint32_t type;
    uint32_t size;  // bytes of data, without the filling
    uint32_t kind;  // an ItemKind
};
static_assert(sizeof(ItemHeader) == 16, "data begins at a multiple of 8");

/// One item of an image, found and checked. Points into the image.
struct ImageItem {
    ItemHeader header;
    const uint8_t* data;
    size_t begin;    // offset of the item in the image
    size_t end;      // offset behind the item's filling
    uint32_t index;  // how many items come before it
};

/// Steps through the items of an image.
class ImageWalker {
  public:
    ImageWalker(const uint8_t* image, size_t size) : image_(image), size_(size) {}

    /// The next item; false at the end and at the first damage.
    bool next(ImageItem& item);

    /// Whether the end was reached with every item whole.
    bool atEnd() const { return at_ == size_; }

  private:
    const uint8_t* image_;
    size_t size_;
    size_t at_ = 0;
    uint32_t index_ = 0;
};

/// Finds the first item of that kind and keyword.
bool findItem(const uint8_t* image, size_t size, ItemKind kind, uint32_t keyword, ImageItem& item);

/// Whether every item is whole and of a known kind, and there are not too many.
bool isWholeImage(const uint8_t* image, size_t size);

/// Bytes that an item with that much data (at most kLargestImage) takes.
constexpr size_t itemSpace(size_t dataSize) {
    return sizeof(ItemHeader) + ((dataSize + 7) & ~size_t{7});
}

/// Writes an item of itemSpace(header.size) bytes.
void writeItem(uint8_t* place, const ItemHeader& header, const void* data);

}  // namespace portability
