#include "portability/transport/Frame.h"

namespace portability {

namespace {

bool isPlausibleImage(const FrameHeader& header, size_t behindHeader, bool broughtFile) {
    if (header.place == kInlineImage) return !broughtFile && header.imageSize == behindHeader;
    if (behindHeader != 0 || header.imageSize == 0 || header.imageSize > kLargestMessage) return false;
    return header.place < kSlots || (header.place == kPassingImage && broughtFile);
}

}  // namespace

bool isPlausible(const FrameHeader& header, size_t packetSize, bool broughtFile) {
    if (header.magic != kFrameMagic || header.bringsFile != (broughtFile ? 1U : 0U)) return false;
    const size_t behindHeader = packetSize - sizeof(FrameHeader);
    switch (header.kind) {
        case FrameKind::request:
            return header.released >> kSlots == 0 && isPlausibleImage(header, behindHeader, broughtFile);
        case FrameKind::reply:
            return header.released == 0 && isPlausibleImage(header, behindHeader, broughtFile);
        case FrameKind::mailbox:
            return broughtFile && behindHeader == 0;
        case FrameKind::wakeUp:
            return !broughtFile && behindHeader == 0;
        case FrameKind::released:
            return !broughtFile && behindHeader == 0 && header.released >> kSlots == 0;
    }
    return false;
}

}  // namespace portability
