#include "macho/format/SegmentCursor.h"

namespace dovrel::macho {

void SegmentCursor::moveTo(size_t segment, uint64_t offset) {
    if (segment >= file_.segments().size()) throw FormatError("a fix-up names a segment that is not there");
    segment_ = &file_.segments()[segment];
    offset_ = offset;
}

uint64_t SegmentCursor::takeWord() {
    if (segment_ == nullptr) throw FormatError("a fix-up names no segment");
    const size_t wordSize = file_.wordSize();
    if (segment_->memorySize < wordSize || offset_ > segment_->memorySize - wordSize)
        throw FormatError("a fix-up lies outside its segment");
    if (++taken_ > file_.memorySize()) throw FormatError("there are more fix-ups than words");
    const uint64_t address = segment_->address + offset_;
    offset_ += wordSize;
    return address;
}

}  // namespace dovrel::macho
