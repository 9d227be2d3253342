// The current position of fix-up instructions in an image.
#pragma once

#include <cstdint>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

class SegmentCursor {
  public:
    /// The file must outlive the cursor.
    explicit SegmentCursor(const MachOFile& file) : file_(file) {}

    void moveTo(size_t segment, uint64_t offset);
    /// Moves forwards or backwards: offsets wrap around.
    void skip(uint64_t bytes) { offset_ += bytes; }

    /// Returns the address of the current word and moves to the next word. Throws FormatError outside the
    /// segment. Also throws it if more words were taken than the image has, because the instructions then
    /// contain a loop.
    uint64_t takeWord();

  private:
    const MachOFile& file_;
    const Segment* segment_ = nullptr;
    uint64_t offset_ = 0;
    uint64_t taken_ = 0;
};

}  // namespace dovrel::macho
