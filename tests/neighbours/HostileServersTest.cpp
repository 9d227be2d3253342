// A sender of events whose receiver is hostile: each send ends, and the next one to a good receiver succeeds.
#include <CoreServices/CoreServices.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

#include "tests/neighbours/Changing.h"
#include "tests/neighbours/SharedPages.h"
#include "tests/portability/appleevents/Events.h"
#include "tests/portability/support/LingeringSocket.h"
#include "tests/portability/support/MemoryFile.h"
#include "tests/portability/support/Peer.h"
#include "tests/support/TemporaryEnvironment.h"

namespace {

using namespace portability;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr size_t kImageSize = 100000;

FrameHeader fileReply(uint64_t id, uint32_t imageSize, uint16_t place = kPassingImage) {
    FrameHeader header;
    header.kind = FrameKind::reply;
    header.id = id;
    header.place = place;
    header.bringsFile = 1;
    header.imageSize = imageSize;
    return header;
}

// Replies with the files, of which each packet claims to be an image of that size.
void replyWithFiles(int connection, const std::vector<int>& files, uint32_t imageSize) {
    sendRaw(connection, headerBytes(fileReply(receiveHeader(connection).id, imageSize)), files);
    waitForMore(connection);
}

void claimMoreThanTheFileHas(int connection) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK | F_SEAL_GROW);
    replyWithFiles(connection, {file.get()}, 4097);
}

void claimMoreThanAllowed(int connection) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK | F_SEAL_GROW);
    replyWithFiles(connection, {file.get()}, 0xFFFFFFFF);
}

void claimAHugeItem(int connection) {
    const Bytes image = itemBytes(keyDirectObject, "text", 2, 0x7FFFFFFF);
    const FileDescriptor file = memoryFile(image.size(), F_SEAL_SHRINK, image);
    replyWithFiles(connection, {file.get()}, static_cast<uint32_t>(image.size()));
}

void sendADevice(int connection) {
    const FileDescriptor device(open("/dev/zero", O_RDWR | O_CLOEXEC));
    replyWithFiles(connection, {device.get()}, 4096);
}

void sendAFileThatShrinks(int connection) {
    const FileDescriptor file = memoryFile(1 << 20, 0, itemBytes(keyDirectObject, "text"));
    const uint64_t id = receiveHeader(connection).id;
    sendRaw(connection, headerBytes(fileReply(id, 1 << 20)), {file.get()});
    EXPECT_EQ(ftruncate(file.get(), 0), 0);
    waitForMore(connection);
}

void sendManyFiles(int connection) {
    const FileDescriptor file = memoryFile(4096, F_SEAL_SHRINK);
    replyWithFiles(connection, std::vector<int>(20, file.get()), 4096);
}

void sendASlowDescriptor(int connection) {
    LingeringSocket lingering;
    const uint64_t id = receiveHeader(connection).id;
    sendRaw(connection, headerBytes(fileReply(id, 4096)), {lingering.get()});
    lingering.closeOwn();
    waitForMore(connection);
}

void sendHalfAFrame(int connection) {
    const Bytes whole = reply(receiveHeader(connection).id, "text");
    sendRaw(connection, Bytes(whole.begin(), whole.begin() + 20));
    waitForMore(connection);
}

void sendRequestsInstead(int connection) {
    receiveHeader(connection);
    while (sendRaw(connection, headerBytes(requestHeader(1)))) {
    }
}

struct HostileReply {
    const char* name;
    void (*send)(int connection);
};

std::ostream& operator<<(std::ostream& stream, const HostileReply& reply) {
    return stream << reply.name;
}

const HostileReply kReplies[] = {{"MoreThanTheFileHas", claimMoreThanTheFileHas},
                                 {"MoreThanAllowed", claimMoreThanAllowed},
                                 {"HugeItem", claimAHugeItem},
                                 {"Device", sendADevice},
                                 {"FileThatShrinks", sendAFileThatShrinks},
                                 {"ManyFiles", sendManyFiles},
                                 {"SlowDescriptor", sendASlowDescriptor},
                                 {"HalfAFrame", sendHalfAFrame},
                                 {"Requests", sendRequestsInstead}};

class HostileServers : public testing::TestWithParam<HostileReply> {
  protected:
    OSStatus send(AESendMode mode = kAEWaitReply) {
        Descriptor event = makeEvent(address_, kEcho);
        putText(event, "request");
        AEDisposeDesc(reply_.get());
        return AESendMessage(event.get(), reply_.get(), mode, kAEDefaultTimeout);
    }

    // Reads the direct parameter of the reply, as the library does. Returns whether the reply has one.
    bool readReply() {
        DescType type = typeNull;
        Size size = 0;
        if (AEGetParamPtr(reply_.get(), keyDirectObject, typeWildCard, &type, nullptr, 0, &size) != noErr)
            return false;
        std::vector<char> bytes(static_cast<size_t>(size));
        Size copied = 0;
        const OSErr result =
            AEGetParamPtr(reply_.get(), keyDirectObject, typeWildCard, &type, bytes.data(), size, &copied);
        return result == noErr;
    }

    TemporaryEnvironment environment_;
    Descriptor address_ = makeAddress(kPeerSignature);
    Descriptor reply_;
};

TEST_P(HostileServers, Reply_LosesTheConnectionAtOnceAndTheNextSendSucceeds) {
    constexpr seconds kLessThanTheTimeOut{30};
    Peer peer({GetParam().send,
               [](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "good")); }});
    const auto start = steady_clock::now();
    EXPECT_EQ(send(), connectionInvalid);
    EXPECT_LT(steady_clock::now() - start, kLessThanTheTimeOut);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(toText(reply_), "good");
}

INSTANTIATE_TEST_SUITE_P(Each, HostileServers, testing::ValuesIn(kReplies),
                         [](const auto& each) { return std::string(each.param.name); });

// The sender may see any of the contents. Nothing else is required of the replies than that reading them ends.
TEST_F(HostileServers, MemoryThatChangesDuringTheRead_LeavesTheSenderIntact) {
    constexpr int kExchanges = 50;
    const Bytes image = itemBytes(keyDirectObject, std::string(kImageSize, 'x'));
    const auto play = [&image](int connection) {
        const FileDescriptor file = memoryFile(image.size(), F_SEAL_SHRINK, image);
        SharedPages pages(file, image.size());
        uint32_t word = 1;
        const Changing changing([&] {
            word = word * 1664525 + 1013904223;
            constexpr size_t kSizeOfTheItem = 8;
            pages.write(kSizeOfTheItem, (word & 1024) != 0 ? 0xFFFFFFF0 : word >> 8);
            pages.write(0, image.data(), 16);
            fallocate(file.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0,
                      static_cast<off_t>(image.size()));
            pages.write(0, image.data(), image.size());
        });
        const auto size = static_cast<uint32_t>(image.size());
        for (;;) {
            const FrameHeader request = receiveHeader(connection);
            if (request.magic == 0 || (request.sendMode & kAEWaitReply) == kAENoReply) return;
            sendRaw(connection, headerBytes(fileReply(request.id, size, 0)), {file.get()});
        }
    };
    // The sender connects again after each reply that it found damaged.
    std::vector<Peer::Play> plays(kExchanges, play);
    int read = 0;
    {
        Peer peer(plays);
        for (int exchange = 0; exchange < kExchanges; ++exchange) {
            const OSStatus status = send();
            EXPECT_TRUE(status == noErr || status == connectionInvalid) << status;
            if (status == noErr && readReply()) ++read;
        }
    }
    EXPECT_GT(read, 0) << "some replies are whole when they are checked";
}

}  // namespace
