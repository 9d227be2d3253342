// A peer with its own endpoint, which acts as each test wants: it violates the protocol, ends, or stays silent.
#pragma once

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "portability/transport/Channel.h"
#include "portability/transport/Endpoint.h"
#include "tests/portability/support/Images.h"
#include "tests/portability/support/RawSocket.h"
#include "tests/support/WaitUntil.h"

constexpr char kPeerSignature[] = "RoGu";
constexpr OSType kPeerCode = 'RoGu';

// Accepts one connection after another. For each one a function acts as the application.
class Peer {
  public:
    using Play = std::function<void(int connection)>;

    explicit Peer(std::vector<Play> plays) : plays_(std::move(plays)) {
        EXPECT_EQ(portability::EndpointClaim::claim(kPeerCode, claim_),
                  portability::EndpointClaim::Outcome::claimed);
        thread_ = std::thread([this] { run(); });
    }
    /// Waits until every play that has a connection has ended.
    ~Peer() {
        shutdown(claim_.listenDescriptor(), SHUT_RDWR);
        thread_.join();
    }

    /// Waits until the first `count` connections are closed.
    void waitUntilClosed(int count) const {
        EXPECT_TRUE(dovrel::test::waitUntil([this, count] { return closed_ >= count; }));
    }

  private:
    void run() {
        // Blocks all signals, so that a test's signals reach the waiting sender and not the peer.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        for (const Play& play : plays_) {
            portability::FileDescriptor connection(accepted());
            if (connection.get() < 0) return;
            play(connection.get());
            connection.reset();
            ++closed_;
        }
    }

    int accepted() const {
        for (;;) {
            const int connection = accept4(claim_.listenDescriptor(), nullptr, nullptr, SOCK_CLOEXEC);
            if (connection >= 0 || errno != EINTR) return connection;
        }
    }

    std::vector<Play> plays_;
    portability::EndpointClaim claim_;
    std::atomic<int> closed_{0};
    std::thread thread_;
};

inline Bytes reply(uint64_t id, const std::string& text, int32_t result = noErr) {
    const Bytes image = itemBytes(keyDirectObject, text);
    portability::FrameHeader header;
    header.kind = portability::FrameKind::reply;
    header.id = id;
    header.result = result;
    header.imageSize = static_cast<uint32_t>(image.size());
    return headerBytes(header) + image;
}

// Waits until the other side has closed the connection or sends more.
inline void waitForMore(int connection) {
    receiveRaw(connection);
}

/// A peer that announces in the second exchange that it reads the mailbox, then disconnects without reading it.
inline void leaveWithoutReadingTheMailbox(int connection) {
    using portability::Channel;
    portability::FrameBuffer buffer;
    portability::ReceivedFrame frame;
    Channel channel{portability::FileDescriptor(dup(connection))};
    for (int exchanges = 0; exchanges < 2;) {
        if (channel.receive(buffer, frame) != Channel::Received::frame) {
            std::this_thread::yield();
            continue;
        }
        channel.setLooking(++exchanges == 2);
        sendRaw(connection, reply(frame.header.id, "one"));
    }
    // From now on the socket delivers nothing except its end.
    pollfd waited{connection, POLLIN, 0};
    poll(&waited, 1, 200);
    EXPECT_EQ(waited.revents & POLLIN, 0) << "the request went to the mailbox";
}
