// One packet of a local socket: bytes from one or two places, and perhaps one open file. Private to the
// layer.
#pragma once

#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cstddef>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Never blocks, never raises SIGPIPE. The bytes are not copied: they stay where they are until the packet
/// was sent. (Written so that no one clears what the system call does not look at.)
class Packet {
  public:
    /// Bytes to send, or room for those to receive.
    Packet(void* bytes, size_t size) { addPart(bytes, size); }
    Packet(const Packet&) = delete;
    Packet& operator=(const Packet&) = delete;

    /// More bytes to send, behind the first ones. At most once.
    void append(const void* bytes, size_t size) { addPart(const_cast<void*>(bytes), size); }

    /// The receiver gets a descriptor of its own for this file. At most once.
    void attach(int descriptor);

    /// 0, else the error number; then nothing was sent.
    int send(int socket);

    enum class Received {
        packet,
        nothing,  ///< nothing is there
        closed,   ///< the other end is gone
        cut       ///< longer than the room, or with more than one file; what came is lost
    };

    /// `size` bytes have come into the room. A file that came along goes to `file`, to be closed at exec;
    /// every other is closed.
    Received receive(int socket, size_t& size, FileDescriptor& file);

  private:
    // One descriptor needs this much; the padding has room for a second, which nobody may send.
    static constexpr size_t kControlSize = CMSG_SPACE(sizeof(int));

    void addPart(void* bytes, size_t size) {
        parts_[message_.msg_iovlen++] = {bytes, size};
        message_.msg_iov = parts_.data();
    }

    alignas(cmsghdr) std::array<char, kControlSize> control_;
    std::array<iovec, 2> parts_;
    msghdr message_{};
};

}  // namespace portability
