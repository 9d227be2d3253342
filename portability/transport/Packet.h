// One packet of a local socket: bytes from one or two buffers, and at most one open file. Private to
// the layer.
#pragma once

#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cstddef>
#include <vector>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Sends or receives one packet. Never raises SIGPIPE, and blocks only on request. The bytes are not copied, so the
/// buffers must stay valid until the packet is sent. (`control_` and `parts_` are left uninitialised to
/// save time.)
class Packet {
  public:
    /// Takes the bytes to send, or the buffer for the bytes to receive.
    Packet(void* bytes, size_t size) { addPart(bytes, size); }
    Packet(const Packet&) = delete;
    Packet& operator=(const Packet&) = delete;

    /// Adds bytes to send after the first ones. At most one call.
    void append(const void* bytes, size_t size) { addPart(const_cast<void*>(bytes), size); }

    /// Sends an open file with the packet; the receiver receives its own descriptor. At most one call. The caller
    /// keeps the ownership of `descriptor`.
    void attach(int descriptor);

    /// Sends the packet. Returns 0, or the error number if nothing was sent.
    int send(int socket);

    enum class Received {
        packet,
        nothing,  ///< no packet has arrived
        closed,   ///< the peer has closed the connection
        cut       ///< larger than the buffer, or with more than one file; the packet is lost
    };

    /// Receives one packet. Sets `size` to the number of bytes in the buffer. If a file was sent with the
    /// packet, `file` owns its descriptor, which is close-on-exec. All other descriptors in the packet are
    /// added to `refused`: to close a descriptor of another process can take any time.
    ///
    /// With Wait::yes it blocks until a packet has arrived, the socket's own time limit (SO_RCVTIMEO) is over, or a
    /// signal was handled; in the last two cases it returns Received::nothing.
    enum class Wait { no, yes };
    Received receive(int socket, size_t& size, FileDescriptor& file, std::vector<FileDescriptor>& refused,
                     Wait wait = Wait::no);

  private:
    // Room for the largest number of descriptors in one packet (the system's SCM_MAX_FD). A correct peer sends
    // at most one. But the system would close all for which there is no room, on this thread.
    static constexpr size_t kControlSize = CMSG_SPACE(253 * sizeof(int));

    void addPart(void* bytes, size_t size) {
        parts_[message_.msg_iovlen++] = {bytes, size};
        message_.msg_iov = parts_.data();
    }

    alignas(cmsghdr) std::array<char, kControlSize> control_;  // attach() uses the beginning
    std::array<iovec, 2> parts_;
    msghdr message_{};
};

}  // namespace portability
