#include "events/EventFrame.h"

#include "events/EventImage.h"

namespace portability {

bool isPlausible(const FrameHeader& header, size_t packetSize, bool broughtFile) {
    if (header.magic != kFrameMagic) return false;
    if (header.kind != FrameKind::request && header.kind != FrameKind::reply) return false;
    if (header.bringsFile != (broughtFile ? 1U : 0U)) return false;
    if (header.released >> (header.kind == FrameKind::request ? kSlots : 0) != 0) return false;
    const size_t behindHeader = packetSize - sizeof(FrameHeader);
    if (header.place == kInlineImage) return !broughtFile && header.imageSize == behindHeader;
    if (behindHeader != 0 || header.imageSize == 0 || header.imageSize > kLargestImage) return false;
    return header.place < kSlots || (header.place == kPassingImage && broughtFile);
}

}  // namespace portability
