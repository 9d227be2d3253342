#include "SharedMailbox.h"

namespace dovrel::benchmarks {

namespace {

struct DescriptorMessage {
    DescriptorMessage() {
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control;
        header.msg_controllen = sizeof control;
    }

    char byte = 0;
    iovec part = {&byte, 1};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr header = {};
};

}  // namespace

void sendDescriptor(int connection, int descriptor) {
    DescriptorMessage message;
    cmsghdr* const head = CMSG_FIRSTHDR(&message.header);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(head), &descriptor, sizeof descriptor);
    if (sendmsg(connection, &message.header, MSG_NOSIGNAL) != 1) throw systemError("sendmsg");
}

Socket receiveDescriptor(int connection) {
    DescriptorMessage message;
    if (recvmsg(connection, &message.header, MSG_CMSG_CLOEXEC) != 1) throw systemError("recvmsg");
    const cmsghdr* const head = CMSG_FIRSTHDR(&message.header);
    if (head == nullptr || head->cmsg_type != SCM_RIGHTS) throw std::runtime_error("no descriptor arrived");
    int descriptor = -1;
    std::memcpy(&descriptor, CMSG_DATA(head), sizeof descriptor);
    return Socket(descriptor);
}

Socket newMailboxMemory() {
    Socket memory(memfd_create("mailbox", MFD_CLOEXEC));
    if (memory.get() < 0) throw systemError("memfd_create");
    if (ftruncate(memory.get(), sizeof(Mailbox)) != 0) throw systemError("ftruncate");
    return memory;
}

}  // namespace dovrel::benchmarks
