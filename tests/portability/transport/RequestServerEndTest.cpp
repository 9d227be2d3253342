// An application that has decided to end receives nothing more: its senders must notice that it has gone.
#include <gtest/gtest.h>
#include <sys/eventfd.h>

#include <atomic>
#include <memory>
#include <vector>

#include "portability/transport/Connection.h"
#include "portability/transport/Packet.h"
#include "portability/transport/RequestServer.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/TemporaryEnvironment.h"

using namespace portability;

namespace {

constexpr OSType kSignature = 'EnDs';

// Decides to end at the request with the number `last`, and replies to every request.
class EndingHandler final : public RequestHandler {
  public:
    explicit EndingHandler(int last) : last_(last) {}

    bool handle(const ReceivedFrame&, pid_t, ReplySender& reply) override {
        if (++handled == last_) isEnding = true;
        MessageMemory nothing;
        return reply.send(0, nothing) == Channel::Sent::done;
    }

    std::atomic<bool> isEnding{false};
    int handled = 0;

  private:
    const int last_;
};

class RequestServerEndTest : public testing::Test {
  protected:
    void startServer(EndingHandler& handler) {
        EndpointClaim claim;
        ASSERT_EQ(EndpointClaim::claim(kSignature, claim), EndpointClaim::Outcome::claimed);
        server_ = std::make_unique<RequestServer>(std::move(claim), wake_.get(), handler, handler.isEnding);
        ASSERT_TRUE(server_->isReady());
    }

    void serveUntilTheEnd(const EndingHandler& handler) {
        while (!handler.isEnding)
            server_->serve();
    }

    // Serves once more than an ending application does, so that a request that is still handled shows.
    void serveAfterTheEnd() {
        eventfd_write(wake_.get(), 1);
        server_->serve();
    }

    static FileDescriptor connect() { return FileDescriptor(connectToEndpoint(kSignature)); }

    static bool isReplied(const FileDescriptor& connection) {
        Bytes buffer(kLargestFrame);
        size_t size = 0;
        FileDescriptor file;
        std::vector<FileDescriptor> refused;
        waitForDescriptor(connection.get(), POLLIN, Deadline::never());
        return Packet(buffer.data(), buffer.size()).receive(connection.get(), size, file, refused) ==
               Packet::Received::packet;
    }

    TemporaryEnvironment environment_;
    FileDescriptor wake_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::unique_ptr<RequestServer> server_;
};

}  // namespace

TEST_F(RequestServerEndTest, RequestsOfOneRound_AfterTheDecisionToEnd_AreNotHandled) {
    EndingHandler handler(1);
    startServer(handler);
    std::vector<FileDescriptor> connections;
    for (int i = 0; i < 5; ++i)
        connections.push_back(connect());
    for (const FileDescriptor& connection : connections)
        sendRaw(connection.get(), headerBytes(requestHeader(1)));
    serveUntilTheEnd(handler);
    server_.reset();
    EXPECT_EQ(handler.handled, 1);
    int replied = 0;
    for (const FileDescriptor& connection : connections)
        replied += isReplied(connection) ? 1 : 0;
    EXPECT_EQ(replied, 1) << "the others see that the application has gone";
}

TEST_F(RequestServerEndTest, RequestThatArrivesAfterTheDecision_IsNotHandled) {
    EndingHandler handler(1);
    startServer(handler);
    const FileDescriptor connection = connect();
    sendRaw(connection.get(), headerBytes(requestHeader(1)));
    serveUntilTheEnd(handler);
    sendRaw(connection.get(), headerBytes(requestHeader(2)));
    const FileDescriptor newcomer = connect();
    sendRaw(newcomer.get(), headerBytes(requestHeader(1)));
    serveAfterTheEnd();
    server_.reset();
    EXPECT_EQ(handler.handled, 1);
    EXPECT_TRUE(isReplied(connection)) << "to the request before the decision";
    EXPECT_FALSE(isReplied(connection));
    EXPECT_FALSE(isReplied(newcomer));
}

TEST_F(RequestServerEndTest, RequestInTheMailboxAfterTheDecision_IsNotTaken) {
    EndingHandler handler(2);
    startServer(handler);
    Channel quick{connect()};
    quick.offerMailbox();
    FrameBuffer buffer;
    ReceivedFrame reply;
    bool posted = false;
    MessageMemory nothing;
    // The first exchange goes through the socket. From then on the server polls the mailbox.
    for (uint64_t id = 1; id <= 2; ++id) {
        EXPECT_EQ(quick.sendQuick(requestHeader(id), nothing, posted), Channel::Sent::done);
        while (handler.handled < static_cast<int>(id))
            server_->serve();
        while (quick.receive(buffer, reply) != Channel::Received::frame) {
        }
    }
    EXPECT_EQ(quick.sendQuick(requestHeader(3), nothing, posted), Channel::Sent::done);
    ASSERT_TRUE(posted);
    serveAfterTheEnd();
    EXPECT_EQ(handler.handled, 2);
    EXPECT_FALSE(quick.wasTaken()) << "so the sender knows that it can send the request again";
}
