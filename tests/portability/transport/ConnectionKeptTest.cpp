// Connections that are kept: reused, found broken, used by many threads.
#include "portability/transport/Connection.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "ConnectionTest.h"
#include "portability/appleevents/EventStorage.h"

using namespace portability;

TEST_F(ConnectionTest, KeptConnection_IsUsedForTheNextSend) {
    Peer peer({[](int connection) {
        for (int i = 0; i < 3; ++i)
            sendRaw(connection, reply(receiveHeader(connection).id, std::to_string(i)));
        waitForMore(connection);
    }});
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(send(), noErr);
        EXPECT_EQ(textOf(reply_), std::to_string(i));
    }
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(ConnectionTest, KeptConnectionThatBroke_IsReplacedOnceAndUnseen) {
    std::atomic<bool> closed{false};
    Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "one")); },
               [&closed](int connection) {
                   closed = true;
                   sendRaw(connection, reply(receiveHeader(connection).id, "two"));
               }});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr) << "the peer had closed the first connection";
    EXPECT_EQ(textOf(reply_), "two");
}

TEST_F(ConnectionTest, KeptConnectionThatBroke_AndNobodyThere_IsProcNotFound) {
    {
        Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "one")); }});
        ASSERT_EQ(send(), noErr);
    }
    EXPECT_EQ(send(), procNotFound);
    EXPECT_EQ(send(100, kAENoReply), procNotFound);
}

TEST_F(ConnectionTest, RequestInTheMailboxThatWasNeverTaken_IsSentAgainToTheNextPeer) {
    // The first peer announces that it reads the mailbox, then disconnects without reading it.
    const auto lookAndLeave = [](int connection) {
        FrameBuffer buffer;
        ReceivedFrame frame;
        Channel channel{FileDescriptor(dup(connection))};
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
    };
    Peer peer({lookAndLeave,
               [](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "two")); }});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "two");
}

TEST_F(ConnectionTest, RequestInTheMailboxThatWasTaken_IsConnectionInvalid) {
    const auto takeAndLeave = [](int connection) {
        FrameBuffer buffer;
        ReceivedFrame frame;
        Channel channel{FileDescriptor(dup(connection))};
        for (int exchanges = 0; exchanges < 3;) {
            if (channel.receive(buffer, frame) != Channel::Received::frame) {
                std::this_thread::yield();
                continue;
            }
            if (++exchanges == 3) return;
            channel.setLooking(exchanges == 2);
            sendRaw(connection, reply(frame.header.id, "one"));
        }
    };
    Peer peer({takeAndLeave});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(ConnectionTest, ManyThreads_EachKeepTheirOwnAnswers) {
    constexpr int kThreads = 8;
    const auto echoIds = [](int connection) {
        std::thread([connection = dup(connection)] {
            for (;;) {
                const FrameHeader header = receiveHeader(connection);
                if (header.magic == 0) break;
                if (!sendRaw(connection, reply(header.id, std::to_string(header.timeOutInTicks)))) break;
            }
            close(connection);
        }).detach();
    };
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    {
        Peer peer(std::vector<Peer::Play>(kThreads, echoIds));
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([this, t, &wrong] {
                FileDescriptor socket;
                connectToEndpoint(kPeerCode, Deadline::never(), socket);
                Connection connection(std::move(socket));
                Descriptor event = makeEvent(address_, kEcho);
                for (int i = 0; i < 200; ++i) {
                    const SInt32 ticks = t * 1000 + i;
                    const OutgoingRequest request{DescriptorStorage::eventOf(event.get())->image(),
                                                  kAEWaitReply, ticks, Deadline::never(), nullptr};
                    ReceivedReply received;
                    if (connection.exchange(request, received) != Connection::Outcome::done) ++wrong;
                    ImageItem item;
                    if (!findItem(received.image, received.size, ItemKind::parameter, keyDirectObject,
                                  item) ||
                        std::string(reinterpret_cast<const char*>(item.data), item.header.size) !=
                            std::to_string(ticks)) {
                        ++wrong;
                    }
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(wrong, 0);
}
