#include "tests/neighbours/HostileActs.h"

#include <CoreServices/CoreServices.h>
#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>
#include <ostream>

#include "portability/appleevents/EventStorage.h"
#include "portability/transport/Endpoint.h"
#include "tests/neighbours/Changing.h"
#include "tests/neighbours/SharedPages.h"
#include "tests/portability/support/LingeringSocket.h"
#include "tests/portability/support/MemoryFile.h"
#include "tests/portability/support/RawSocket.h"

namespace {

using namespace portability;

constexpr OSType kServer = 'RBJT';
constexpr AEEventClass kRequestClass = 'BUFF';
constexpr AEEventID kRequestId = 'data';
constexpr int32_t kWantsReply = kAEWaitReply;
constexpr int32_t kWantsNoReply = kAENoReply;

FileDescriptor connect() {
    return FileDescriptor(connectToEndpoint(kServer));
}

// Returns the image of an event that the server's handler gets. `data` need not be a request that it understands.
Bytes eventImage(const std::string& data) {
    EventStorage event;
    const DescType codes[] = {kRequestClass, kRequestId};
    event.put(ItemKind::attribute, keyEventClassAttr, typeType, &codes[0], sizeof codes[0]);
    event.put(ItemKind::attribute, keyEventIDAttr, typeType, &codes[1], sizeof codes[1]);
    event.put(ItemKind::parameter, keyDirectObject, typeChar, data.data(), data.size());
    return Bytes(event.image().data(), event.image().data() + event.image().size());
}

Bytes inlineRequest(uint64_t id, const Bytes& image, int32_t mode = kWantsReply) {
    FrameHeader header = requestHeader(id);
    header.imageSize = static_cast<uint32_t>(image.size());
    header.sendMode = mode;
    return headerBytes(header) + image;
}

FrameHeader fileRequest(uint64_t id, uint32_t imageSize, uint16_t place = kPassingImage) {
    FrameHeader header = requestHeader(id);
    header.place = place;
    header.bringsFile = 1;
    header.imageSize = imageSize;
    header.sendMode = kWantsReply;
    return header;
}

// Sends one packet on a connection of its own, and waits for the reply or the end of the connection.
void sendAlone(const Bytes& packet, const std::vector<int>& descriptors = {}) {
    const FileDescriptor connection = connect();
    if (sendRaw(connection.get(), packet, descriptors)) receiveRaw(connection.get());
}

void sendInFile(const Bytes& image, uint32_t claimedSize) {
    const FileDescriptor file = memoryFile(image.size(), F_SEAL_SHRINK | F_SEAL_GROW, image);
    sendAlone(headerBytes(fileRequest(1, claimedSize)), {file.get()});
}

// Sizes that no sender could have, in each number that says a size.
void claimHugeSizes() {
    for (const uint32_t size :
         {uint32_t{0xFFFFFFFF}, uint32_t{1} << 31, (uint32_t{1} << 30) + 1, uint32_t{1} << 30})
        sendInFile(eventImage("small"), size);
    const Bytes forged = itemBytes(keyDirectObject, "text", 2, 0x7FFFFFFF);
    sendAlone(inlineRequest(1, forged));
    sendInFile(forged, static_cast<uint32_t>(forged.size()));
    const std::string hugePart("AsAk\0\0\0\0\0\x68\xFF\xFF\xFF\xFF", 14);
    sendAlone(inlineRequest(1, eventImage(hugePart)));
    // Many empty parts, and many empty items.
    std::string parts("AsAk\0\0", 6);
    for (uint32_t tag = 0; tag < 200000; ++tag)
        parts += std::string("\0\0\0\0\0\0\0\0", 8);
    const Bytes image = eventImage(parts);
    sendInFile(image, static_cast<uint32_t>(image.size()));
    const Bytes zeros(size_t{2} << 20);
    sendInFile(zeros, static_cast<uint32_t>(zeros.size()));
}

void sendUnsuitableFiles() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    const FileDescriptor pipeEnds[] = {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    const FileDescriptor files[] = {FileDescriptor(open("/dev/zero", O_RDWR | O_CLOEXEC)),
                                    FileDescriptor(open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
                                    FileDescriptor(open("/proc/self/exe", O_RDONLY | O_CLOEXEC)),
                                    FileDescriptor(open("/", O_PATH | O_CLOEXEC)),
                                    FileDescriptor(eventfd(0, EFD_CLOEXEC)),
                                    memoryFile(1 << 20, 0),
                                    memoryFile(0, F_SEAL_SHRINK),
                                    memoryFile(100, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE)};
    const Bytes packet = headerBytes(fileRequest(1, 5000));
    std::vector<int> all = {pipeEnds[0].get(), pipeEnds[1].get()};
    for (const FileDescriptor& file : files)
        all.push_back(file.get());
    for (const int descriptor : all)
        sendAlone(packet, {descriptor});
    sendAlone(packet, all);
    sendAlone(inlineRequest(1, eventImage("a file that was not announced")), {all[0]});
}

void sendSlowDescriptors() {
    LingeringSocket lingering;
    const FileDescriptor connection = connect();
    sendRaw(connection.get(), headerBytes(fileRequest(1, 100)), {lingering.get()});
    receiveRaw(connection.get());
}

// Requests whose image changes while the server reads it: first the sizes, then everything.
void changeSharedMemory() {
    const Bytes image = eventImage(std::string(100000, 'x'));
    const FileDescriptor file = memoryFile(image.size(), F_SEAL_SHRINK | F_SEAL_GROW, image);
    SharedPages pages(file, image.size());
    const auto size = static_cast<uint32_t>(image.size());
    uint32_t word = 1;
    const Changing changing([&] {
        word = word * 1664525 + 1013904223;
        // The third number of each of the first three items is its size. They are 24 bytes apart.
        const size_t offset = 8 + size_t{24} * (word >> 28 & 3);
        pages.write(offset, word & 1024 ? 0xFFFFFFF0 : word >> 8);
        pages.write(0, image.data(), 72);
    });
    for (int i = 0; i < 20; ++i)
        sendAlone(headerBytes(fileRequest(1, size, i % 2 == 0 ? 0 : kPassingImage)), {file.get()});
}

// Memory whose pages are removed while the server reads it, and files that shrink after they were sent.
void shrinkSharedMemory() {
    const Bytes image = eventImage(std::string(1 << 20, 'x'));
    const auto size = static_cast<uint32_t>(image.size());
    {
        const FileDescriptor sealed = memoryFile(image.size(), F_SEAL_SHRINK, image);
        const Changing changing([&] {
            fallocate(sealed.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0, size);
            if (pwrite(sealed.get(), image.data(), image.size(), 0) < 0) std::abort();
        });
        for (int i = 0; i < 5; ++i)
            sendAlone(headerBytes(fileRequest(1, size)), {sealed.get()});
    }
    for (int i = 0; i < 5; ++i) {
        const FileDescriptor file = memoryFile(image.size(), 0, image);
        const FileDescriptor connection = connect();
        sendRaw(connection.get(), headerBytes(fileRequest(1, size)), {file.get()});
        if (ftruncate(file.get(), 0) != 0) std::abort();
        receiveRaw(connection.get());
    }
}

// The sender's half of a mailbox: posted, size, taken, looking, processor; the frame begins at byte 64. The
// other half follows, and both have the same size.
constexpr size_t kHalfSize = 64 + kLargestFrame + 24;
constexpr size_t kFrameInHalf = 64;

// A mailbox whose numbers change all the time, and which says that another frame waits, without end.
void changeMailbox() {
    const FileDescriptor file = memoryFile(2 * kHalfSize, F_SEAL_SHRINK | F_SEAL_GROW);
    SharedPages pages(file, 2 * kHalfSize);
    const FileDescriptor connection = connect();
    FrameHeader offer;
    offer.kind = FrameKind::mailbox;
    offer.bringsFile = 1;
    const Bytes request = inlineRequest(1, eventImage("mail"));
    pages.write(kFrameInHalf, request.data(), request.size());
    pages.write(12, 1);
    sendRaw(connection.get(), headerBytes(offer), {file.get()});
    uint32_t word = 1;
    const Changing changing([&] {
        word = word * 1664525 + 1013904223;
        pages.write(4, word & 4096 ? static_cast<uint32_t>(request.size()) : word);
        pages.write(0, word);
        pages.write(kFrameInHalf + (word >> 20 & 60), word & 64 ? word : 0);
        pages.write(kFrameInHalf, request.data(), request.size());
    });
    for (uint64_t id = 1; id < 200; ++id) {
        if (!sendRaw(connection.get(), inlineRequest(id, eventImage("packet")))) break;
    }
}

void floodWithConnections() {
    std::vector<FileDescriptor> connections;
    for (int i = 0; i < 300; ++i)
        connections.push_back(connect());
    for (const FileDescriptor& connection : connections)
        sendRaw(connection.get(), Bytes(1));
}

void floodWithHalfFrames() {
    const Bytes whole = inlineRequest(1, eventImage("half"));
    for (size_t size = 1; size < whole.size(); size += 3) {
        const FileDescriptor connection = connect();
        sendRaw(connection.get(), Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        if (size % 2 == 0) receiveRaw(connection.get());
    }
}

void floodWithRequests() {
    const FileDescriptor connection = connect();
    const Bytes request = inlineRequest(1, eventImage(std::string(1000, 'f')), kWantsNoReply);
    for (int i = 0; i < 2000; ++i)
        sendRaw(connection.get(), request);
}

void leaveRepliesUnread() {
    const FileDescriptor connection = connect();
    for (uint64_t id = 1; id < 2000; ++id) {
        if (!sendRaw(connection.get(), inlineRequest(id, eventImage("unread")))) return;
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const HostileAct& act) {
    return stream << act.name;
}

const std::vector<HostileAct>& hostileActs() {
    static const std::vector<HostileAct> acts = {{"HugeClaims", claimHugeSizes},
                                                 {"UnsuitableFiles", sendUnsuitableFiles},
                                                 {"SlowDescriptors", sendSlowDescriptors},
                                                 {"MemoryThatChanges", changeSharedMemory},
                                                 {"MemoryThatShrinks", shrinkSharedMemory},
                                                 {"MailboxThatChanges", changeMailbox},
                                                 {"ManyConnections", floodWithConnections},
                                                 {"HalfFrames", floodWithHalfFrames},
                                                 {"ManyRequests", floodWithRequests},
                                                 {"UnreadReplies", leaveRepliesUnread}};
    return acts;
}
