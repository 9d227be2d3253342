#include "macho/format/CompactUnwindTable.h"

#include <map>

namespace dovrel::macho {

namespace {

constexpr uint32_t kVersion = 1;
constexpr uint32_t kRegularPage = 2;
constexpr uint32_t kCompressedPage = 3;
constexpr uint32_t kFirstLevelSize = 12;
constexpr uint32_t kHandlersSize = 8;
constexpr uint32_t kRegularSize = 8;
constexpr unsigned kPersonalityShift = 28;
constexpr uint32_t kPersonalityMask = 3;
constexpr uint32_t kOffsetMask = 0x00FFFFFF;
constexpr unsigned kEncodingShift = 24;

// The section's header.
struct Header {
    uint32_t version;
    uint32_t encodings;
    uint32_t encodingCount;
    uint32_t personalities;
    uint32_t personalityCount;
    uint32_t index;
    uint32_t indexCount;
};

class Table {
  public:
    explicit Table(const ByteReader& section) : section_(section), header_(section.at<Header>(0)) {
        if (header_.version != kVersion) throw FormatError("the unwind table has an unknown version");
    }

    std::vector<CompactUnwindEntry> read() {
        for (uint32_t i = 0; i < header_.indexCount; ++i) {
            const bool isLast = i + 1 == header_.indexCount;
            const uint64_t at = header_.index + uint64_t{i} * kFirstLevelSize;
            const uint32_t begin = section_.at<uint32_t>(at);
            endLastAt(begin);
            // The last entry only contains the ends of the previous entry's functions and handlers.
            if (isLast) break;
            readHandlers(section_.at<uint32_t>(at + 8), section_.at<uint32_t>(at + 8 + kFirstLevelSize));
            readPage(begin, section_.at<uint32_t>(at + 4));
        }
        for (CompactUnwindEntry& entry : entries_)
            complete(entry);
        return std::move(entries_);
    }

  private:
    void readHandlers(uint32_t begin, uint32_t end) {
        for (uint64_t at = begin; at < end; at += kHandlersSize)
            handlers_[section_.at<uint32_t>(at)] = section_.at<uint32_t>(at + 4);
    }

    void readPage(uint32_t begin, uint32_t page) {
        const uint32_t kind = section_.at<uint32_t>(page);
        const uint64_t first = uint64_t{page} + section_.at<uint16_t>(uint64_t{page} + 4);
        const uint32_t count = section_.at<uint16_t>(uint64_t{page} + 6);
        if (kind != kRegularPage && kind != kCompressedPage)
            throw FormatError("an unwind page is of an unknown kind");
        for (uint32_t i = 0; i < count; ++i) {
            if (kind == kRegularPage) {
                const uint64_t at = first + uint64_t{i} * kRegularSize;
                add(section_.at<uint32_t>(at), section_.at<uint32_t>(at + 4));
            } else {
                const uint32_t word = section_.at<uint32_t>(first + uint64_t{i} * sizeof(uint32_t));
                add(begin + (word & kOffsetMask), encoding(page, word >> kEncodingShift));
            }
        }
    }

    // Returns an encoding. Frequent encodings are in one list for all pages; the others are in the page's own
    // list, whose indices follow.
    uint32_t encoding(uint32_t page, uint32_t index) const {
        const uint64_t at = index < header_.encodingCount
                                ? header_.encodings + uint64_t{index} * sizeof(uint32_t)
                                : uint64_t{page} + section_.at<uint16_t>(uint64_t{page} + 8) +
                                      uint64_t{index - header_.encodingCount} * sizeof(uint32_t);
        return section_.at<uint32_t>(at);
    }

    void add(uint32_t begin, uint32_t encoding) {
        endLastAt(begin);
        entries_.emplace_back();
        entries_.back().begin = begin;
        entries_.back().end = begin;
        entries_.back().encoding = encoding;
    }

    void endLastAt(uint32_t end) {
        if (entries_.empty() || entries_.back().end != entries_.back().begin) return;
        if (end < entries_.back().begin) throw FormatError("the unwind table is not in order");
        entries_.back().end = end;
    }

    void complete(CompactUnwindEntry& entry) const {
        const uint32_t personality = entry.encoding >> kPersonalityShift & kPersonalityMask;
        if (personality > header_.personalityCount) throw FormatError("a personality function is missing");
        if (personality != 0)
            entry.personality =
                section_.at<uint32_t>(header_.personalities + uint64_t{personality - 1} * sizeof(uint32_t));
        if ((entry.encoding & kUnwindHasHandlers) == 0) return;
        const auto handlers = handlers_.find(entry.begin);
        if (handlers == handlers_.end()) throw FormatError("a function's table of handlers is missing");
        entry.handlers = handlers->second;
    }

    const ByteReader& section_;
    const Header header_;
    std::map<uint32_t, uint32_t> handlers_;
    std::vector<CompactUnwindEntry> entries_;
};

}  // namespace

std::vector<CompactUnwindEntry> compactUnwindEntries(const ByteReader& section) {
    return Table(section).read();
}

}  // namespace dovrel::macho
