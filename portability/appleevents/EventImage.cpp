#include "portability/appleevents/EventImage.h"

#include <cstring>

namespace portability {

bool ImageWalker::find(ItemKind kind, uint32_t keyword, ImageItem& item) {
    while (next(item)) {
        if (item.header.keyword == keyword && item.header.kind == static_cast<uint32_t>(kind)) return true;
    }
    return false;
}

void writeItem(uint8_t* place, const ItemHeader& header, const void* data) {
    std::memcpy(place, &header, sizeof header);
    if (header.size == 0) return;
    uint8_t* content = place + sizeof header;
    // The last 8 bytes first, because clearing only the padding would take a function call.
    const uint64_t zeros = 0;
    std::memcpy(content + (header.size - 1) / sizeof zeros * sizeof zeros, &zeros, sizeof zeros);
    std::memcpy(content, data, header.size);
}

}  // namespace portability
