// Fuzz target for frames of Apple events, for every way in which the bytes of a peer arrive. A second,
// much simpler parser of an event's image must accept the same images. Accepted images are read with
// the platform's functions.
//
// The first byte of the input selects the way:
//
// - 0: a packet,
// - 1: a packet (the next 40 bytes) with a shared-memory file that contains the rest,
// - 2: the sender's half of a mailbox,
// - 3: a packet that is the reply to a request.

#include <CoreServices/CoreServices.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "FuzzTarget.h"
#include "portability/appleevents/EventDispatch.h"
#include "portability/appleevents/EventStorage.h"
#include "portability/transport/Channel.h"
#include "portability/transport/Connection.h"

namespace {

using namespace portability;

using Bytes = std::vector<uint8_t>;

struct Input {
    const uint8_t* data;
    size_t size;

    Bytes take(size_t count) {
        count = std::min(count, size);
        Bytes taken(data, data + count);
        data += count;
        size -= count;
        return taken;
    }
    Bytes takeAll() { return take(size); }
};

std::pair<FileDescriptor, FileDescriptor> connectedSockets() {
    int ends[2];
    FUZZ_CHECK(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void sendPacket(const FileDescriptor& socket, const Bytes& packet, int file) {
    iovec part{const_cast<uint8_t*>(packet.data()), packet.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof file)] = {};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (file >= 0) {
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        cmsghdr* rights = CMSG_FIRSTHDR(&message);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(sizeof file);
        std::memcpy(CMSG_DATA(rights), &file, sizeof file);
    }
    // A packet that is larger than the system allows never reaches a receiver, so failures are ignored.
    sendmsg(socket.get(), &message, MSG_DONTWAIT | MSG_NOSIGNAL);
}

FileDescriptor sealedFile(const Bytes& content) {
    FileDescriptor file(memfd_create("fuzz", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    FUZZ_CHECK(write(file.get(), content.data(), content.size()) == static_cast<ssize_t>(content.size()));
    FUZZ_CHECK(fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK) == 0);
    return file;
}

uint32_t numberAt(const uint8_t* bytes, size_t index) {
    uint32_t number;
    std::memcpy(&number, bytes + 4 * index, sizeof number);
    return number;
}

// Returns whether the bytes consist of complete items only.
bool isSimplyWhole(const uint8_t* bytes, size_t size) {
    size_t items = 0;
    while (size > 0) {
        if (size < 16 || ++items > kMostItems) return false;
        const uint64_t data = numberAt(bytes, 2);
        const uint64_t item = 16 + (data + 7) / 8 * 8;
        const uint32_t kind = numberAt(bytes, 3);
        if (item > size || (kind != 1 && kind != 2)) return false;
        bytes += item;
        size -= static_cast<size_t>(item);
    }
    return true;
}

OSErr readEverything(const AppleEvent* event, AppleEvent* reply, SRefCon) {
    for (const DescType type : {DescType{typeWildCard}, DescType{typeChar}, DescType{typeSInt32}}) {
        DescType found = typeNull;
        Size size = 0;
        if (AEGetParamPtr(event, keyDirectObject, type, &found, nullptr, 0, &size) != noErr) continue;
        std::string bytes(static_cast<size_t>(size), '\0');
        FUZZ_CHECK(AEGetParamPtr(event, keyDirectObject, type, &found, bytes.data(), size, &size) == noErr);
        FUZZ_CHECK(static_cast<size_t>(size) == bytes.size());
        if (reply->descriptorType != typeNull)
            AEPutParamPtr(reply, keyDirectObject, found, bytes.data(), size);
    }
    for (const AEKeyword keyword : {AEKeyword{keyMissedKeywordAttr}, AEKeyword{keyReturnIDAttr}}) {
        SInt32 number = 0;
        AEGetAttributePtr(event, keyword, typeSInt32, nullptr, &number, sizeof number, nullptr);
    }
    return noErr;
}

void handle(const ReceivedFrame& frame) {
    const bool isWhole = ItemIndex().read(frame.image, frame.header.imageSize);
    FUZZ_CHECK(isWhole == isSimplyWhole(frame.image, frame.header.imageSize));
    if (!isWhole) return;
    EventStorage event(frame.image, frame.header.imageSize, frame.block);
    event.setDelivery({getpid(), kAELocalProcess, kAEWaitReply, 60});
    EventStorage reply;
    FUZZ_CHECK(prepareReply(event, reply) == noErr);
    dispatchEvent(event, &reply);
    FUZZ_CHECK(isSimplyWhole(reply.image().data(), reply.image().size()));
}

void receiveAll(Channel& channel) {
    FrameBuffer buffer;
    ReceivedFrame frame;
    while (channel.receive(buffer, frame) == Channel::Received::frame)
        handle(frame);
}

void receivePacket(const Bytes& packet, int file) {
    auto ends = connectedSockets();
    Channel channel(std::move(ends.second));
    sendPacket(ends.first, packet, file);
    receiveAll(channel);
}

void receiveByMailbox(const Bytes& half) {
    auto ends = connectedSockets();
    Channel channel(std::move(ends.second));
    FileDescriptor file;
    FUZZ_CHECK(Mailbox::create(file) != nullptr);
    FUZZ_CHECK(pwrite(file.get(), half.data(), half.size(), 0) == static_cast<ssize_t>(half.size()));
    FrameHeader offer;
    offer.kind = FrameKind::mailbox;
    offer.bringsFile = 1;
    Bytes packet(sizeof offer);
    std::memcpy(packet.data(), &offer, sizeof offer);
    sendPacket(ends.first, packet, file.get());
    receiveAll(channel);
}

void receiveReply(const Bytes& packet) {
    auto ends = connectedSockets();
    Connection connection(std::move(ends.second));
    sendPacket(ends.first, packet, -1);
    shutdown(ends.first.get(), SHUT_WR);
    MessageMemory nothing;
    ReceivedReply reply;
    const OutgoingRequest request{nothing, kAEWaitReply, 1, Deadline::never(), nullptr};
    if (connection.exchange(request, reply) != Connection::Outcome::done) return;
    const bool isWhole = ItemIndex().read(reply.image, reply.size);
    FUZZ_CHECK(isWhole == isSimplyWhole(reply.image, reply.size));
    if (!isWhole) return;
    EventStorage storage(reply.image, reply.size, reply.block);
    AppleEvent event{typeAppleEvent, storage.handle()};
    AppleEvent none{typeNull, nullptr};
    readEverything(&event, &none, SRefCon());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const OSErr installed =
        AEInstallEventHandler(typeWildCard, typeWildCard, readEverything, SRefCon(), false);
    FUZZ_CHECK(installed == noErr);
    if (size == 0 || size > size_t{1} << 17) return 0;
    Input input{data + 1, size - 1};
    switch (data[0]) {
        case 0:
            receivePacket(input.takeAll(), -1);
            break;
        case 1: {
            const Bytes packet = input.take(sizeof(FrameHeader));
            const FileDescriptor file = sealedFile(input.takeAll());
            receivePacket(packet, file.get());
            break;
        }
        case 2:
            receiveByMailbox(input.take(64 + kLargestFrame));
            break;
        case 3:
            receiveReply(input.takeAll());
            break;
        default:
            break;
    }
    return 0;
}
