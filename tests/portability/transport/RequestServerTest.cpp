#include "portability/transport/RequestServer.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/un.h>

#include <atomic>
#include <thread>

#include "tests/portability/support/Images.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryEnvironment.h"

using namespace portability;

namespace {

constexpr OSType kSignature = 'SeRv';

constexpr int32_t kWantsReply = 3;
constexpr int32_t kWantsNoReply = 1;

// Replies with the request's own image, if the sender wants a reply. Disconnects a sender whose reply does
// not arrive.
struct Echo final : RequestHandler {
    bool handle(const ReceivedFrame& request, pid_t, ReplySender& reply) override {
        if (request.header.sendMode == kWantsNoReply) return true;
        return reply.send(0, MessageMemory(request.image, request.header.imageSize)) == Channel::Sent::done;
    }
};

// A server on its own thread, which ends with the test.
class RequestServerTest : public testing::Test {
  protected:
    RequestServerTest() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        EndpointClaim claim;
        EXPECT_EQ(EndpointClaim::claim(kSignature, claim), EndpointClaim::Outcome::claimed);
        thread_ = std::thread([this, claim = std::make_shared<EndpointClaim>(std::move(claim))] {
            Echo echo;
            const std::atomic<bool> isEnding{false};
            RequestServer server(std::move(*claim), wake_.get(), echo, isEnding);
            EXPECT_TRUE(server.isReady());
            while (!server.serve()) {
            }
        });
    }
    ~RequestServerTest() override {
        eventfd_write(wake_.get(), 1);
        thread_.join();
    }

    static FileDescriptor connect() { return FileDescriptor(connectToEndpoint(kSignature)); }

    static Bytes request(uint64_t id, const std::string& text, int32_t mode = kWantsReply) {
        const Bytes image = itemBytes(keyDirectObject, text);
        FrameHeader header;
        header.id = id;
        header.sendMode = mode;
        header.imageSize = static_cast<uint32_t>(image.size());
        return headerBytes(header) + image;
    }

    // Returns the text in the next reply, or "(closed)".
    static std::string answer(const FileDescriptor& connection, uint64_t* id = nullptr) {
        const Bytes bytes = receiveRaw(connection.get());
        FrameHeader header;
        if (bytes.size() < sizeof header) return "(closed)";
        std::memcpy(&header, bytes.data(), sizeof header);
        if (id != nullptr) *id = header.id;
        return firstItemText(bytes.data() + sizeof header, bytes.size() - sizeof header);
    }

    TemporaryEnvironment environment_;
    FileDescriptor wake_;
    std::thread thread_;
};

}  // namespace

TEST_F(RequestServerTest, Requests_AreAnsweredWithTheirIdsInOrder) {
    const FileDescriptor connection = connect();
    for (uint64_t id = 10; id < 20; ++id)
        sendRaw(connection.get(), request(id, std::to_string(id)));
    for (uint64_t id = 10; id < 20; ++id) {
        uint64_t answered = 0;
        EXPECT_EQ(answer(connection, &answered), std::to_string(id));
        EXPECT_EQ(answered, id);
    }
}

TEST_F(RequestServerTest, ManySenders_AreAllServed) {
    std::vector<FileDescriptor> connections;
    for (int i = 0; i < 100; ++i)
        connections.push_back(connect());
    for (size_t i = 0; i < connections.size(); ++i)
        sendRaw(connections[i].get(), request(1, std::to_string(i)));
    for (size_t i = 0; i < connections.size(); ++i)
        EXPECT_EQ(answer(connections[i]), std::to_string(i));
}

TEST_F(RequestServerTest, RequestThatWantsNoReply_GetsNone) {
    const FileDescriptor connection = connect();
    sendRaw(connection.get(), request(1, "unanswered", kWantsNoReply));
    sendRaw(connection.get(), request(2, "answered"));
    EXPECT_EQ(answer(connection), "answered");
}

TEST_F(RequestServerTest, SenderThatBreaksTheRules_LosesItsConnection_OthersDoNot) {
    const FileDescriptor good = connect();
    FrameHeader replyHeader;
    replyHeader.kind = FrameKind::reply;
    FrameHeader earlierFormat;
    earlierFormat.magic = 0x41457631;
    for (const Bytes& packet :
         {Bytes(10, 0), Bytes(500, 0xFF), headerBytes(replyHeader), headerBytes(earlierFormat)}) {
        const FileDescriptor bad = connect();
        sendRaw(bad.get(), packet);
        EXPECT_EQ(answer(bad), "(closed)");
        sendRaw(good.get(), request(1, "still served"));
        EXPECT_EQ(answer(good), "still served");
    }
}

TEST_F(RequestServerTest, SenderThatDoesNotTakeItsReplies_DoesNotHoldUpOthers) {
    const FileDescriptor deaf = connect();
    const FileDescriptor good = connect();
    const Bytes packet = request(1, std::string(15000, 'x'));
    bool closed = false;
    for (int i = 0; i < 10000 && !closed; ++i) {
        pollfd waited{deaf.get(), POLLOUT, 0};
        poll(&waited, 1, 60000);
        closed = send(deaf.get(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) < 0 &&
                 errno != EAGAIN;
        if (i % 50 != 0) continue;
        sendRaw(good.get(), request(1, "served"));
        ASSERT_EQ(answer(good), "served");
    }
    EXPECT_TRUE(closed) << "what it does not take is not kept without end";
    sendRaw(good.get(), request(1, "served"));
    EXPECT_EQ(answer(good), "served");
}

TEST_F(RequestServerTest, SenderWithoutEndOfEvents_DoesNotHoldUpOthers) {
    std::atomic<bool> stop{false};
    std::thread flood([&stop] {
        const FileDescriptor connection = connect();
        while (!stop)
            sendRaw(connection.get(), request(1, "flood", kWantsNoReply));
    });
    const FileDescriptor good = connect();
    for (int i = 0; i < 50; ++i) {
        sendRaw(good.get(), request(1, "served"));
        EXPECT_EQ(answer(good), "served");
    }
    stop = true;
    flood.join();
}

TEST_F(RequestServerTest, SenderThatLeaves_IsForgotten) {
    const int before = openDescriptors();
    for (int i = 0; i < 300; ++i) {
        const FileDescriptor connection = connect();
        sendRaw(connection.get(), request(1, "x"));
        ASSERT_EQ(answer(connection), "x");
    }
    const FileDescriptor last = connect();
    sendRaw(last.get(), request(1, "x"));
    ASSERT_EQ(answer(last), "x");
    EXPECT_LT(openDescriptors(), before + 20);
}

TEST_F(RequestServerTest, NoDescriptorsLeft_NewSendersAreRefused_OldOnesServed) {
    const FileDescriptor good = connect();
    for (int i = 0; i < 5; ++i) {
        // Other senders have connected and disconnected before.
        const FileDescriptor other = connect();
        sendRaw(other.get(), request(1, "gone"));
        ASSERT_EQ(answer(other), "gone");
        sendRaw(good.get(), request(1, "before"));
        ASSERT_EQ(answer(good), "before");
    }
    // Another one has been refused before. (Sanitizers need descriptors when code runs for the first time.)
    const FileDescriptor bad = connect();
    sendRaw(bad.get(), Bytes(10, 0));
    ASSERT_EQ(answer(bad), "(closed)");
    // The other ends of the connections are in another process, so that only
    // the server runs out of descriptors.
    rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t usual = limit.rlim_cur;
    int start[2];
    int done[2];
    ASSERT_EQ(pipe(start), 0);
    ASSERT_EQ(pipe(done), 0);
    const pid_t senders = fork();
    if (senders == 0) {
        char token;
        if (read(start[0], &token, 1) != 1) _exit(1);
        std::vector<FileDescriptor> connections;
        for (int i = 0; i < 40; ++i)
            connections.push_back(connect());
        int refused = 0;
        for (const FileDescriptor& connection : connections) {
            sendRaw(connection.get(), request(1, "new"));
            if (answer(connection) == "(closed)") ++refused;
        }
        const char count = static_cast<char>(refused);
        _exit(write(done[1], &count, 1) == 1 ? 0 : 1);
    }
    limit.rlim_cur = static_cast<rlim_t>(openDescriptors()) + 10;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    ASSERT_EQ(write(start[1], "x", 1), 1);
    char refused = 0;
    ASSERT_EQ(read(done[0], &refused, 1), 1);
    EXPECT_GT(refused, 20);
    sendRaw(good.get(), request(2, "after"));
    EXPECT_EQ(answer(good), "after");
    limit.rlim_cur = usual;
    setrlimit(RLIMIT_NOFILE, &limit);
    int status = -1;
    waitpid(senders, &status, 0);
    EXPECT_EQ(status, 0);
    for (const int descriptor : {start[0], start[1], done[0], done[1]})
        close(descriptor);
}

TEST_F(RequestServerTest, SenderOfAnotherUser_IsRefused) {
    NEEDS_ROOT("become another user");
    // The permissions of the folders would refuse other users. They are opened here, so that only the check
    // of the connection refuses them.
    const std::filesystem::path folder = environment_.endpointFolder();
    for (std::filesystem::path opened = folder; opened != environment_.folder().parent_path();
         opened = opened.parent_path()) {
        chmod(opened.c_str(), 0755);
    }
    std::filesystem::path socketFile;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".socket") socketFile = entry.path();
    }
    chmod(socketFile.c_str(), 0777);
    const auto askAs = [&socketFile](uid_t user) {
        return inForkedProcess([&socketFile, user] {
            if (setuid(user) != 0) return 1;
            sockaddr_un address{};
            address.sun_family = AF_UNIX;
            std::strcpy(address.sun_path, socketFile.c_str());
            const FileDescriptor connection(socket(AF_UNIX, SOCK_SEQPACKET, 0));
            if (::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
                return 2;
            sendRaw(connection.get(), request(1, "let me in"));
            return answer(connection) == "let me in" ? 10 : 11;
        });
    };
    EXPECT_EQ(askAs(0), 10);
    EXPECT_EQ(askAs(65534), 11);
}
