#include "portability/appleevents/ItemIndex.h"

namespace portability {

bool ItemIndex::read(const uint8_t* image, size_t size) {
    kept_ = 0;
    count_ = 0;
    end_ = 0;
    ImageWalker walker(image, size);
    ImageItem item;
    while (walker.next(item))
        add(item.header, item.begin);
    return walker.atEnd();
}

bool ItemIndex::find(const uint8_t* image, size_t size, ItemKind kind, uint32_t keyword,
                     ImageItem& item) const {
    for (uint32_t i = 0; i < kept_; ++i) {
        const Entry& entry = entries_[i];
        if (entry.header.keyword != keyword || entry.header.kind != static_cast<uint32_t>(kind)) continue;
        item.header = entry.header;
        item.data = image + entry.begin + sizeof(ItemHeader);
        item.begin = entry.begin;
        item.end = entry.begin + itemSpace(entry.header.size);
        item.index = i;
        return true;
    }
    if (end_ >= size) return false;
    ImageWalker walker(image, size, end_, kept_);
    return walker.find(kind, keyword, item);
}

void ItemIndex::replace(const ImageItem& item, const ItemHeader& header) {
    if (item.index < kept_) entries_[item.index].header = header;
}

}  // namespace portability
