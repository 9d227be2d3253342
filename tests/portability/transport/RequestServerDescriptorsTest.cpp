// Senders that send descriptors whose close takes long: they do not hold up others.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/resource.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "portability/transport/RequestServer.h"
#include "tests/portability/support/LingeringSocket.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryEnvironment.h"
#include "tests/support/WaitUntil.h"

using namespace portability;

namespace {

constexpr OSType kSignature = 'DeSc';

class EmptyReplies final : public RequestHandler {
    bool handle(const ReceivedFrame&, pid_t, ReplySender& reply) override {
        MessageMemory nothing;
        return reply.send(0, nothing) == Channel::Sent::done;
    }
};

class RequestServerDescriptorsTest : public testing::Test {
  protected:
    RequestServerDescriptorsTest() {
        EndpointClaim claim;
        EXPECT_EQ(EndpointClaim::claim(kSignature, claim), EndpointClaim::Outcome::claimed);
        server_ = std::make_unique<RequestServer>(std::move(claim), wake_.get(), handler_, isEnding_);
    }
    ~RequestServerDescriptorsTest() override {
        lingering_.clear();  // so that the server can end
        eventfd_write(wake_.get(), 1);
        thread_.join();
    }

    // Until then, connections and packets wait in the socket. So a test can close its own descriptor of a
    // socket that it has sent before the server closes the other: this thread would wait for the close of the
    // last one.
    void startServer() {
        thread_ = std::thread([this] {
            while (!server_->serve()) {
            }
        });
    }

    static FileDescriptor connect() { return FileDescriptor(connectToEndpoint(kSignature)); }

    // The server closes the connection after the packet, and serves another sender at once.
    void expectRefusedWithoutDelay(const FileDescriptor& bad) {
        EXPECT_TRUE(receiveRaw(bad.get()).empty());
        const FileDescriptor good = connect();
        sendRaw(good.get(), headerBytes(requestHeader(1)));
        EXPECT_FALSE(receiveRaw(good.get()).empty()) << "the server waits for the close of a descriptor";
    }

    static Bytes fileRequest() {
        FrameHeader header = requestHeader(1);
        header.place = kPassingImage;
        header.bringsFile = 1;
        header.imageSize = 100;
        return headerBytes(header);
    }

    TemporaryEnvironment environment_;
    EmptyReplies handler_;
    const std::atomic<bool> isEnding_{false};
    FileDescriptor wake_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::unique_ptr<RequestServer> server_;
    std::thread thread_;
    std::vector<std::unique_ptr<LingeringSocket>> lingering_;
};

}  // namespace

TEST_F(RequestServerDescriptorsTest, SocketInPlaceOfSharedMemory_IsRefusedWithoutDelay) {
    LingeringSocket lingering;
    const FileDescriptor bad = connect();
    sendRaw(bad.get(), fileRequest(), {lingering.get()});
    lingering.closeOwn();
    startServer();
    expectRefusedWithoutDelay(bad);
}

TEST_F(RequestServerDescriptorsTest, ManySocketsInOnePacket_AreRefusedWithoutDelay) {
    std::vector<std::unique_ptr<LingeringSocket>> lingering;
    std::vector<int> descriptors;
    for (int i = 0; i < 5; ++i) {
        lingering.push_back(std::make_unique<LingeringSocket>());
        descriptors.push_back(lingering.back()->get());
    }
    const FileDescriptor bad = connect();
    sendRaw(bad.get(), fileRequest(), descriptors);
    for (const auto& socket : lingering)
        socket->closeOwn();
    startServer();
    expectRefusedWithoutDelay(bad);
}

TEST_F(RequestServerDescriptorsTest, SocketInAPacketThatIsNeverRead_DelaysNobody) {
    LingeringSocket lingering;
    const FileDescriptor bad = connect();
    sendRaw(bad.get(), Bytes(10, 0));
    sendRaw(bad.get(), fileRequest(), {lingering.get()});
    lingering.closeOwn();
    startServer();
    expectRefusedWithoutDelay(bad);
}

// The first sockets keep the thread busy that closes descriptors. The connections that wait for it are many.
TEST_F(RequestServerDescriptorsTest, SocketsInPacketsThatAreNeverReadFromManySenders_DelayNobody) {
    constexpr int kBusy = 3;
    constexpr int kSenders = 120;
    std::vector<FileDescriptor> bad;
    for (int i = 0; i < kSenders; ++i) {
        const bool sendsSocket = i < kBusy || i == kSenders - 1;
        bad.push_back(connect());
        sendRaw(bad.back().get(), Bytes(10, 0));
        if (!sendsSocket) continue;
        lingering_.push_back(std::make_unique<LingeringSocket>());
        sendRaw(bad.back().get(), fileRequest(), {lingering_.back()->get()});
        lingering_.back()->closeOwn();
    }
    startServer();
    for (const FileDescriptor& connection : bad)
        EXPECT_TRUE(receiveRaw(connection.get()).empty());
    expectRefusedWithoutDelay(bad.back());
}

// If the server had no descriptor left, the system would close the received socket on the server's thread.
TEST_F(RequestServerDescriptorsTest, SocketFromOneOfManySenders_IsRefusedWithoutDelay) {
    constexpr int kSenders = 300;
    int told[2];
    ASSERT_EQ(pipe2(told, O_CLOEXEC), 0);
    const FileDescriptor tellers[] = {FileDescriptor(told[0]), FileDescriptor(told[1])};
    const FileDescriptor good = connect();
    // The other ends are in another process, so that only the server runs out of descriptors.
    const pid_t senders = fork();
    if (senders == 0) {
        std::vector<FileDescriptor> connections;
        for (int i = 0; i < kSenders; ++i)
            connections.push_back(connect());
        for (const FileDescriptor& connection : connections) {
            sendRaw(connection.get(), headerBytes(requestHeader(1)));
            receiveRaw(connection.get());
        }
        LingeringSocket lingering;
        sendRaw(connections[0].get(), fileRequest(), {lingering.get()});
        lingering.closeOwn();
        receiveRaw(connections[0].get());
        if (write(told[1], "x", 1) != 1) _exit(1);
        for (;;)
            pause();
    }
    rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t usual = std::exchange(limit.rlim_cur, 100);
    setrlimit(RLIMIT_NOFILE, &limit);
    startServer();
    char word;
    EXPECT_EQ(read(told[0], &word, 1), 1);
    sendRaw(good.get(), headerBytes(requestHeader(1)));
    EXPECT_FALSE(receiveRaw(good.get()).empty()) << "the server waits for the close of a descriptor";
    kill(senders, SIGKILL);
    waitpid(senders, nullptr, 0);
    limit.rlim_cur = usual;
    setrlimit(RLIMIT_NOFILE, &limit);
}

TEST_F(RequestServerDescriptorsTest, RefusedDescriptors_AreClosed) {
    startServer();
    const int before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        const FileDescriptor bad = connect();
        sendRaw(bad.get(), fileRequest(), {wake_.get(), wake_.get(), wake_.get()});
        EXPECT_TRUE(receiveRaw(bad.get()).empty());
    }
    EXPECT_TRUE(dovrel::test::waitUntil([before] { return openDescriptors() <= before; }));
}
