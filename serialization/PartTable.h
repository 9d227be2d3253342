// PartTable: where the parts of a structured block lie, by their tags. The first entry of a tag wins.
//
// Made for two cases: the dozen of parts of a transfer object, kept in the table itself without touching the
// heap and found by looking at each, and lists of up to millions, sorted once when all are known.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace dovrel {

class PartTable {
  public:
    struct Entry {
        uint32_t tag;
        uint32_t offset;  ///< of the data in the block
        uint32_t length;  ///< of the data
    };

    /// Empty. (Written out so that no one clears the places for the entries first.)
    PartTable() {}

    /// Adds an entry, which is found after the next call of finish unless its tag is there already.
    void add(uint32_t tag, uint32_t offset, uint32_t length) {
        if (count_ < kInlineEntries) {
            inline_[count_++] = Entry{tag, offset, length};
        } else {
            addToHeap(tag, offset, length);
        }
    }

    /// Call after a run of add, also after one that was broken off.
    void finish();

    /// Null where the tag is absent. Valid until the next add.
    const Entry* find(uint32_t tag) const {
        if (!heap_.empty()) return findInHeap(tag);
        const Entry* const end = inline_.data() + count_;
        for (const Entry* entry = inline_.data(); entry != end; ++entry) {
            if (entry->tag == tag) return entry;
        }
        return nullptr;
    }

  private:
    static constexpr size_t kInlineEntries = 16;

    void addToHeap(uint32_t tag, uint32_t offset, uint32_t length);
    const Entry* findInHeap(uint32_t tag) const;

    /// The entries are in one of the two: as they were added in the first until it is full, then all in the
    /// second, sorted but for those added since finish.
    std::array<Entry, kInlineEntries> inline_;
    std::vector<Entry> heap_;
    size_t count_ = 0;  // of inline_
    bool sorted_ = true;
};

}  // namespace dovrel
