// PartTable: the positions of the parts of a structured block, by tag. If several entries have the same tag,
// the first one is found.
//
// It is optimised for two cases. A transfer object has about a dozen parts: they are stored in the table
// itself, without a heap allocation, and found by linear search. A list has up to millions of parts: they are
// sorted once when all are known.
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
        uint32_t offset;  ///< offset of the data in the block
        uint32_t length;  ///< length of the data in bytes
    };

    /// Creates an empty table. User-provided, so that `PartTable{}` does not zero-fill the entries.
    PartTable() {}

    /// Adds an entry. It can be found after the next call of finish, unless the table already
    /// contains its tag.
    void add(uint32_t tag, uint32_t offset, uint32_t length) {
        if (count_ < kInlineEntries) {
            inline_[count_++] = Entry{tag, offset, length};
        } else {
            addToHeap(tag, offset, length);
        }
    }

    /// Must be called after a series of calls of add, even if the series was cut short.
    void finish() {
        if (!sorted_) sortHeap();
    }

    /// Returns the entry with the tag, or null if there is none. Valid until the next call of add.
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
    void sortHeap();
    const Entry* findInHeap(uint32_t tag) const;

    /// All entries are in only one of these containers: in `inline_`, in the order in which they were added,
    /// until it is full, and then in `heap_`. The entries in `heap_` are sorted, except those added since the
    /// last call of finish.
    std::array<Entry, kInlineEntries> inline_;
    std::vector<Entry> heap_;
    size_t count_ = 0;  // number of entries in inline_
    bool sorted_ = true;
};

}  // namespace dovrel
