// What travels between two processes. Private to the layer.
//
// Each request and each reply is one packet: the header below, followed by the image, the bytes of the
// message, if that is small. A large image lies in a shared-memory file whose descriptor comes along with the
// packet. To use the same file again without handing it over and mapping it each time, the receiver keeps it
// under the number of one of a few slots, one set of slots per direction of a connection. A sender does not
// change what lies in a slot before the receiver has confirmed that it is done: a request is confirmed by its
// reply, a reply by the mask `released` of a later request.
#pragma once

#include <cstddef>
#include <cstdint>

#include "portability/transport/ImageMemory.h"

namespace portability {

constexpr uint32_t kFrameMagic = 0x41457631;
constexpr uint32_t kSlots = 4;

enum class FrameKind : uint16_t {
    request = 1,
    reply = 2,
    mailbox = 3,  // brings the file of a mailbox (Mailbox.h) from sender to receiver
    wakeUp = 4    // there is something in the mailbox
};

/// Where the image is, when it is not in a slot: behind the header, or in the file that comes along and is
/// not kept.
constexpr uint16_t kInlineImage = 0xFFFF;
constexpr uint16_t kPassingImage = 0xFFFE;

/// In the byte order of the machine, of the same form with 32 and with 64 bits.
struct FrameHeader {
    uint32_t magic = kFrameMagic;
    FrameKind kind = FrameKind::request;
    uint16_t place = kInlineImage;  // the number of a slot, or one of the above
    uint64_t id = 0;                // a request's, rising on each connection; a reply has that of its request
    uint32_t imageSize = 0;
    uint32_t released = 0;       // requests: bit n: the reply in slot n is no longer used
    uint32_t bringsFile = 0;     // 1: the file of `place` comes along
    int32_t sendMode = 0;        // requests: for the handler only, like the next one
    int32_t timeOutInTicks = 0;  // requests
    int32_t result = 0;          // replies: 0, or an error of the receiving side; for the sender only
};
static_assert(sizeof(FrameHeader) == 40 && offsetof(FrameHeader, id) == 8 &&
                  offsetof(FrameHeader, imageSize) == 16 && offsetof(FrameHeader, result) == 36,
              "the same with 32 and with 64 bits");

constexpr size_t kLargestFrame = sizeof(FrameHeader) + kLargestInlineImage;

/// Whether a packet of `packetSize` bytes (at least a header), with or without one descriptor, can have that
/// header.
bool isPlausible(const FrameHeader& header, size_t packetSize, bool broughtFile);

}  // namespace portability
