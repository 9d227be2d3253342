// The place in an image that fix-up instructions move along and change.
#pragma once

#include <cstdint>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

class SegmentCursor {
  public:
    /// The file has to be there while the cursor is used.
    explicit SegmentCursor(const MachOFile& file) : file_(file) {}

    void moveTo(size_t segment, uint64_t offset);
    /// Backwards, too: offsets wrap around.
    void skip(uint64_t bytes) { offset_ += bytes; }

    /// The address of the word here; goes on to the next one. Throws FormatError outside the segment, and
    /// where more words were taken than the image has: the instructions have a loop in them.
    uint64_t takeWord();

  private:
    const MachOFile& file_;
    const Segment* segment_ = nullptr;
    uint64_t offset_ = 0;
    uint64_t taken_ = 0;
};

}  // namespace dovrel::macho
