// Sends and receives raw packets, so that a test can act as a peer that violates the protocol.
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "Images.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Frame.h"

/// Returns two connected sockets of the kind that transports events.
inline std::pair<portability::FileDescriptor, portability::FileDescriptor> connectedSockets() {
    int ends[2] = {-1, -1};
    socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends);
    return {portability::FileDescriptor(ends[0]), portability::FileDescriptor(ends[1])};
}

inline portability::FrameHeader requestHeader(uint64_t id) {
    portability::FrameHeader header;
    header.id = id;
    return header;
}

inline Bytes headerBytes(const portability::FrameHeader& header) {
    const auto* raw = reinterpret_cast<const uint8_t*>(&header);
    return Bytes(raw, raw + sizeof header);
}

/// Sends one packet with any descriptors; waits until there is room.
inline bool sendRaw(int socket, const Bytes& bytes, const std::vector<int>& descriptors = {}) {
    iovec part{const_cast<uint8_t*>(bytes.data()), bytes.size()};
    alignas(cmsghdr) char control[256] = {};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (!descriptors.empty()) {
        const size_t size = descriptors.size() * sizeof(int);
        message.msg_control = control;
        message.msg_controllen = CMSG_SPACE(size);
        cmsghdr* rights = CMSG_FIRSTHDR(&message);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(size);
        std::memcpy(CMSG_DATA(rights), descriptors.data(), size);
    }
    for (;;) {
        const ssize_t sent = sendmsg(socket, &message, MSG_NOSIGNAL);
        if (sent >= 0 || errno != EINTR) return sent == static_cast<ssize_t>(bytes.size());
    }
}

/// Returns the next packet without its descriptors; empty if the other end has
/// closed, or after a generous time-out.
inline Bytes receiveRaw(int socket) {
    constexpr int kGenerousMilliseconds = 60000;
    pollfd waited{socket, POLLIN, 0};
    int ready;
    do
        ready = poll(&waited, 1, kGenerousMilliseconds);
    while (ready < 0 && errno == EINTR);
    if (ready != 1) return {};
    Bytes bytes(portability::kLargestFrame + 1);
    const ssize_t size = recv(socket, bytes.data(), bytes.size(), 0);
    bytes.resize(size < 0 ? 0 : static_cast<size_t>(size));
    return bytes;
}

/// Returns the header of the next packet of a kind and skips all others; its magic is 0 if none arrives.
inline portability::FrameHeader receiveHeader(int socket,
                                              portability::FrameKind kind = portability::FrameKind::request) {
    for (;;) {
        const Bytes bytes = receiveRaw(socket);
        portability::FrameHeader header;
        header.magic = 0;
        if (bytes.size() < sizeof header) return header;
        std::memcpy(&header, bytes.data(), sizeof header);
        if (header.kind == kind) return header;
    }
}
