#include "serialization/PartTable.h"

#include <algorithm>

namespace dovrel {
namespace {

bool byTag(const PartTable::Entry& a, const PartTable::Entry& b) {
    return a.tag < b.tag;
}

bool belowTag(const PartTable::Entry& entry, uint32_t tag) {
    return entry.tag < tag;
}

}  // namespace

void PartTable::add(uint32_t tag, uint32_t offset, uint32_t length) {
    const Entry entry{tag, offset, length};
    if (heap_.empty() && count_ < kInlineEntries) {
        insertInline(entry);
        return;
    }
    if (heap_.empty()) heap_.assign(inline_.begin(), inline_.end());
    if (heap_.back().tag >= tag) sorted_ = false;
    heap_.push_back(entry);
}

void PartTable::finish() {
    if (sorted_) return;
    // Stable, so that of entries with one tag the first stays in front.
    std::stable_sort(heap_.begin(), heap_.end(), byTag);
    const auto sameTag = [](const Entry& a, const Entry& b) { return a.tag == b.tag; };
    heap_.erase(std::unique(heap_.begin(), heap_.end(), sameTag), heap_.end());
    sorted_ = true;
}

const PartTable::Entry* PartTable::find(uint32_t tag) const {
    const Entry* const begin = heap_.empty() ? inline_.data() : heap_.data();
    const Entry* const end = begin + (heap_.empty() ? count_ : heap_.size());
    const Entry* const found = std::lower_bound(begin, end, tag, belowTag);
    return found != end && found->tag == tag ? found : nullptr;
}

void PartTable::insertInline(const Entry& entry) {
    Entry* const end = inline_.data() + count_;
    Entry* const place = std::lower_bound(inline_.data(), end, entry.tag, belowTag);
    if (place != end && place->tag == entry.tag) return;
    std::copy_backward(place, end, end + 1);
    *place = entry;
    ++count_;
}

}  // namespace dovrel
