#include "portability/appleevents/EventImage.h"

#include <cstring>

namespace portability {

namespace {

// The compiler may repeat a plain read after the check, and the second read may return another value.
uint32_t readOnce(const uint8_t* place) {
    return __atomic_load_n(reinterpret_cast<const uint32_t*>(place), __ATOMIC_RELAXED);
}

ItemHeader readHeader(const uint8_t* place) {
    return {readOnce(place), readOnce(place + 4), readOnce(place + 8), readOnce(place + 12)};
}

bool isKnownKind(uint32_t kind) {
    return kind == static_cast<uint32_t>(ItemKind::attribute) ||
           kind == static_cast<uint32_t>(ItemKind::parameter);
}

}  // namespace

bool ImageWalker::next(ImageItem& item) {
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

bool ImageWalker::find(ItemKind kind, uint32_t keyword, ImageItem& item) {
    while (next(item)) {
        if (item.header.keyword == keyword && item.header.kind == static_cast<uint32_t>(kind)) return true;
    }
    return false;
}

void writeItem(uint8_t* place, const ItemHeader& header, const void* data) {
    std::memcpy(place, &header, sizeof header);
    uint8_t* content = place + sizeof header;
    if (header.size != 0) std::memcpy(content, data, header.size);
    std::memset(content + header.size, 0, itemSpace(header.size) - sizeof header - header.size);
}

}  // namespace portability
