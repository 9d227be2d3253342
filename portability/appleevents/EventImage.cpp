#include "portability/appleevents/EventImage.h"

#include <cstring>

namespace portability {

bool ImageWalker::find(ItemKind kind, uint32_t keyword, ImageItem& item) {
    while (next(item)) {
        if (item.header.keyword == keyword && item.header.kind == static_cast<uint32_t>(kind)) return true;
    }
    return false;
}

void prepareItem(uint8_t* place, const ItemHeader& header) {
    std::memcpy(place, &header, sizeof header);
    if (header.size == 0) return;
    uint8_t* content = place + sizeof header;
    // All of the last 8 bytes, because clearing only the padding would take a function call.
    const uint64_t zeros = 0;
    std::memcpy(content + (header.size - 1) / sizeof zeros * sizeof zeros, &zeros, sizeof zeros);
}

void writeItem(uint8_t* place, const ItemHeader& header, const void* data) {
    prepareItem(place, header);
    if (header.size != 0) std::memcpy(place + sizeof header, data, header.size);
}

}  // namespace portability
