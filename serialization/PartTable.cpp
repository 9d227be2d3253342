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

void PartTable::addToHeap(uint32_t tag, uint32_t offset, uint32_t length) {
    if (heap_.empty()) {
        heap_.assign(inline_.begin(), inline_.end());
        sorted_ = std::is_sorted(heap_.begin(), heap_.end(), byTag);
    }
    if (heap_.back().tag > tag) sorted_ = false;
    heap_.push_back(Entry{tag, offset, length});
}

void PartTable::sortHeap() {
    // Stable, so that the first of several entries with the same tag stays first. find returns that one.
    std::stable_sort(heap_.begin(), heap_.end(), byTag);
    sorted_ = true;
}

const PartTable::Entry* PartTable::findInHeap(uint32_t tag) const {
    const auto found = std::lower_bound(heap_.begin(), heap_.end(), tag, belowTag);
    return found != heap_.end() && found->tag == tag ? &*found : nullptr;
}

}  // namespace dovrel
