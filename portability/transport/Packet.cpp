#include "portability/transport/Packet.h"

#include <cerrno>
#include <cstring>

namespace portability {

namespace {

// Takes the ownership of all received descriptors and keeps one of them in `file`. Returns false if there is
// more than one.
bool takeFile(msghdr& message, FileDescriptor& file) {
    bool single = true;
    for (cmsghdr* control = CMSG_FIRSTHDR(&message); control != nullptr;
         control = CMSG_NXTHDR(&message, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) continue;
        const size_t count = (control->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int descriptor;
            std::memcpy(&descriptor, CMSG_DATA(control) + i * sizeof descriptor, sizeof descriptor);
            single = single && !file;
            file = aboveStandardStreams(descriptor);
        }
    }
    return single;
}

}  // namespace

void Packet::attach(int descriptor) {
    control_ = {};
    message_.msg_control = control_.data();
    message_.msg_controllen = kControlSize;
    cmsghdr* control = CMSG_FIRSTHDR(&message_);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(control), &descriptor, sizeof descriptor);
}

int Packet::send(int socket) {
    ssize_t sent;
    do
        sent = sendmsg(socket, &message_, MSG_DONTWAIT | MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent < 0 ? errno : 0;
}

Packet::Received Packet::receive(int socket, size_t& size, FileDescriptor& file) {
    message_.msg_control = control_.data();
    message_.msg_controllen = kControlSize;
    ssize_t received;
    // ECONNRESET says, once, that the peer closed its end without reading everything. The packets that it had
    // sent before are still there.
    do
        received = recvmsg(socket, &message_, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    while (received < 0 && (errno == EINTR || errno == ECONNRESET));
    if (received < 0) return errno == EAGAIN ? Received::nothing : Received::closed;
    if (received == 0) return Received::closed;

    size = static_cast<size_t>(received);
    const bool single = takeFile(message_, file);
    const bool cut = (message_.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0;
    return single && !cut ? Received::packet : Received::cut;
}

}  // namespace portability
