// The format of the packets between two processes. Private to the layer.
//
// Each request and each reply is one packet: the header below, followed by the image (the bytes of the
// message) if that is small. A large image is in a shared-memory file, whose descriptor is sent with
// the packet.
//
// To avoid sending and mapping the same file for each packet, the receiver keeps it in one of a few numbered
// slots. Each direction of a connection has its own slots. The sender does not change the content of a slot
// until the receiver has confirmed that it no longer reads it. A reply confirms its request. A reply itself
// is confirmed by the bit mask `released` of a later request, or of a packet of its own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "portability/transport/MessageMemory.h"

namespace portability {

/// Marks a packet of this format, "AEv2". Each change of the format or of the meaning of a field gets another
/// number. So two builds that would misunderstand each other close the connection at the first packet.
constexpr uint32_t kFrameMagic = 0x41457632;
constexpr uint32_t kSlots = 4;

enum class FrameKind : uint16_t {
    request = 1,
    reply = 2,
    mailbox = 3,  // carries the file of a mailbox (Mailbox.h) from sender to receiver
    wakeUp = 4,   // tells the receiver that the mailbox contains a frame
    released = 5  // only confirms replies, for the receiver of requests
};

/// Places of an image that is not in a slot. kInlineImage: after the header. kPassingImage: in a file that is
/// sent with the packet and that the receiver does not keep.
constexpr uint16_t kInlineImage = 0xFFFF;
constexpr uint16_t kPassingImage = 0xFFFE;

/// Fields are in the machine's byte order. The layout is the same in 32-bit and 64-bit programs.
struct FrameHeader {
    uint32_t magic = kFrameMagic;
    FrameKind kind = FrameKind::request;
    uint16_t place = kInlineImage;  // slot number, or one of the constants above
    uint64_t id = 0;                // increases on each connection; a reply has the id of its request
    uint32_t imageSize = 0;
    uint32_t released = 0;  // requests and `released`: bit n is set if the reply in slot n is no longer used
    uint32_t bringsFile = 0;     // 1: the file for `place` is sent with the packet
    int32_t sendMode = 0;        // requests: for the handler; the transport does not read it
    int32_t timeOutInTicks = 0;  // likewise
    int32_t result = 0;          // replies: 0, or an error of the receiver, for the sender
};
static_assert(sizeof(FrameHeader) == 40 && offsetof(FrameHeader, id) == 8 &&
                  offsetof(FrameHeader, imageSize) == 16 && offsetof(FrameHeader, result) == 36,
              "the same with 32 and with 64 bits");

constexpr size_t kLargestFrame = sizeof(FrameHeader) + kLargestInlineImage;

/// Returns whether a packet of `packetSize` bytes (at least a header), with or without a file descriptor, can
/// have this header.
bool isPlausible(const FrameHeader& header, size_t packetSize, bool broughtFile);

}  // namespace portability
