#include "portability/transport/Packet.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "portability/transport/DescriptorCloser.h"

namespace portability {

namespace {

void addRefused(FileDescriptor received, std::vector<FileDescriptor>& refused) {
    try {
        refused.push_back(FileDescriptor());
        refused.back() = std::move(received);
    } catch (const std::bad_alloc&) {
        closeWithoutLinger(std::move(received));
    }
}

// Takes the ownership of all received descriptors: the first goes to `file`, all others to `refused`.
void takeFiles(msghdr& message, FileDescriptor& file, std::vector<FileDescriptor>& refused) {
    for (cmsghdr* control = CMSG_FIRSTHDR(&message); control != nullptr;
         control = CMSG_NXTHDR(&message, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) continue;
        const size_t count = (control->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int descriptor;
            std::memcpy(&descriptor, CMSG_DATA(control) + i * sizeof descriptor, sizeof descriptor);
            FileDescriptor received = aboveStandardStreams(descriptor);
            if (!file) {
                file = std::move(received);
            } else {
                addRefused(std::move(received), refused);
            }
        }
    }
}

}  // namespace

void Packet::attach(int descriptor) {
    constexpr size_t kUsed = CMSG_SPACE(sizeof descriptor);
    std::memset(control_.data(), 0, kUsed);
    message_.msg_control = control_.data();
    message_.msg_controllen = kUsed;
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

Packet::Received Packet::receive(int socket, size_t& size, FileDescriptor& file,
                                 std::vector<FileDescriptor>& refused, Wait wait) {
    file.reset();
    message_.msg_control = control_.data();
    message_.msg_controllen = kControlSize;
    ssize_t received;
    // ECONNRESET says, once, that the peer closed its end without reading everything. The packets that it had
    // sent before are still there.
    const int flags = MSG_CMSG_CLOEXEC | (wait == Wait::yes ? 0 : MSG_DONTWAIT);
    do
        received = recvmsg(socket, &message_, flags);
    while (received < 0 && (errno == ECONNRESET || (errno == EINTR && wait == Wait::no)));
    if (received < 0) return errno == EAGAIN || errno == EINTR ? Received::nothing : Received::closed;
    if (received == 0) return Received::closed;

    size = static_cast<size_t>(received);
    takeFiles(message_, file, refused);
    const bool cut = (message_.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0;
    return refused.empty() && !cut ? Received::packet : Received::cut;
}

}  // namespace portability
