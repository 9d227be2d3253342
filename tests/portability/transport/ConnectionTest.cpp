// Connections to peers that reply, violate the protocol, end, or stay silent.
#include "portability/transport/Connection.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/time.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "ConnectionTest.h"
#include "tests/support/WaitUntil.h"

using namespace portability;
using dovrel::test::waitUntil;

TEST_F(ConnectionTest, Reply_WithTheIdOfTheRequest_IsTheAnswer) {
    Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer")); }});
    ASSERT_EQ(send(), Outcome::done);
    EXPECT_EQ(text_, "answer");
}

TEST_F(ConnectionTest, Reply_WithAResult_IsTheResultOfTheSend) {
    Peer peer(
        {[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer", -1708)); }});
    EXPECT_EQ(send(), Outcome::done);
    EXPECT_EQ(result_, -1708);
}

TEST_F(ConnectionTest, Request_CarriesModeAndTimeOut) {
    FrameHeader seen;
    {
        Peer peer({[&seen](int connection) {
            seen = receiveHeader(connection);
            sendRaw(connection, reply(seen.id, ""));
        }});
        ASSERT_EQ(send(123, 77), Outcome::done);
    }
    EXPECT_EQ(seen.sendMode, 77);
    EXPECT_EQ(seen.timeOutInTicks, 123);
}

TEST_F(ConnectionTest, SilentPeer_TimesOutAtTheTick) {
    Peer peer({[](int connection) {
        receiveHeader(connection);
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), Outcome::timedOut);
    expectTicks(12);
    EXPECT_EQ(post(), Outcome::done);
}

// A wait of more than two seconds begins in the system call that receives.
TEST_F(ConnectionTest, SilentPeer_LongTimeOut_TimesOutAtTheTick) {
    Peer peer({[](int connection) {
        receiveHeader(connection);
        waitForMore(connection);
    }});
    EXPECT_EQ(send(150), Outcome::timedOut);
    expectTicks(150);
    EXPECT_EQ(post(), Outcome::done) << "which ends the peer";
}

TEST_F(ConnectionTest, PeerThatClosesAfterTheRequest_LosesTheConnection) {
    Peer peer({[](int connection) { receiveHeader(connection); }});
    EXPECT_EQ(send(), Outcome::lost);
}

TEST_F(ConnectionTest, PeerThatClosesWithoutReading_LosesTheConnection) {
    Peer peer({[](int connection) {
        pollfd waited{connection, POLLIN, 0};
        poll(&waited, 1, -1);
    }});
    EXPECT_EQ(send(), Outcome::lost);
}

TEST_F(ConnectionTest, MalformedReplies_LoseTheConnection) {
    std::vector<Bytes> answers;
    answers.push_back(Bytes(1, 0));
    answers.push_back(Bytes(100, 0xFF));
    answers.push_back(Bytes(kLargestFrame + 1, 0xFF));
    Bytes cut = reply(1, "answer");
    cut.pop_back();
    answers.push_back(cut);
    FrameHeader request;
    request.id = 1;
    answers.push_back(headerBytes(request));
    answers.push_back(reply(0, "never sent"));
    answers.push_back(reply(2, "not sent yet"));
    answers.push_back(reply(0xFFFFFFFFFFFFFFFF, "never"));
    for (const Bytes& answer : answers) {
        Peer peer({[&answer](int connection) {
            receiveHeader(connection);
            sendRaw(connection, answer);
            waitForMore(connection);
        }});
        EXPECT_EQ(send(), Outcome::lost);
        EXPECT_EQ(text_, "");
    }
}

TEST_F(ConnectionTest, LateReply_OnTheSameConnection_IsNotTheNextAnswer) {
    Peer peer({[](int connection) {
        const FrameHeader first = receiveHeader(connection);
        const FrameHeader second = receiveHeader(connection);
        sendRaw(connection, reply(first.id, "late"));
        sendRaw(connection, reply(second.id, "in time"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(1), Outcome::timedOut);
    ASSERT_EQ(send(), Outcome::done);
    EXPECT_EQ(text_, "in time");
    EXPECT_EQ(post(), Outcome::done);
}

TEST_F(ConnectionTest, LateReply_ThatIsThereBeforeTheNextRequest_IsDropped) {
    std::atomic<bool> timedOut{false};
    std::atomic<bool> answered{false};
    Peer peer({[&](int connection) {
        const FrameHeader first = receiveHeader(connection);
        EXPECT_TRUE(waitUntil([&] { return timedOut.load(); }));
        sendRaw(connection, reply(first.id, "late"));
        answered = true;
        sendRaw(connection, reply(receiveHeader(connection).id, "in time"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(0), Outcome::timedOut);
    timedOut = true;
    EXPECT_TRUE(waitUntil([&] { return answered.load(); }));
    ASSERT_EQ(send(), Outcome::done);
    EXPECT_EQ(text_, "in time");
    EXPECT_EQ(post(), Outcome::done);
}

TEST_F(ConnectionTest, SameReplyTwice_LosesTheConnection) {
    Peer peer({[](int connection) {
        const FrameHeader first = receiveHeader(connection);
        sendRaw(connection, reply(first.id, "once"));
        receiveHeader(connection);
        sendRaw(connection, reply(first.id, "twice"));
        waitForMore(connection);
    }});
    ASSERT_EQ(send(), Outcome::done);
    EXPECT_EQ(send(), Outcome::lost);
}

TEST_F(ConnectionTest, FloodOfWakeUps_DoesNotExtendTheTimeOut) {
    std::atomic<bool> stop{false};
    Peer peer({[&stop](int connection) {
        FrameHeader wakeUp;
        wakeUp.kind = FrameKind::wakeUp;
        const Bytes packet = headerBytes(wakeUp);
        while (!stop)
            ::send(connection, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }});
    EXPECT_EQ(send(12), Outcome::timedOut);
    expectTicks(12);
    stop = true;
}

TEST_F(ConnectionTest, SignalsDuringTheWait_DoNotEndIt) {
    struct sigaction counting {};
    counting.sa_handler = [](int) {};
    sigaction(SIGALRM, &counting, nullptr);
    const itimerval often{{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    std::atomic<bool> answerNow{false};
    Peer peer({[&answerNow](int connection) {
        const FrameHeader late = receiveHeader(connection);
        const FrameHeader next = receiveHeader(connection);
        EXPECT_TRUE(waitUntil([&] { return answerNow.load(); }));
        sendRaw(connection, reply(late.id, "late"));
        sendRaw(connection, reply(next.id, "answer"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), Outcome::timedOut);
    expectTicks(12);
    answerNow = true;
    EXPECT_EQ(send(), Outcome::done);
    EXPECT_EQ(text_, "answer");
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_EQ(post(), Outcome::done);
}

TEST_F(ConnectionTest, PeerThatReadsNothing_FullSocket_TimesOutAtTheTick) {
    std::atomic<bool> stop{false};
    Peer peer({[&stop](int) { EXPECT_TRUE(waitUntil([&] { return stop.load(); })); }});
    Outcome outcome = Outcome::done;
    for (int i = 0; i < 1000 && outcome == Outcome::done; ++i)
        outcome = post(12, std::string(15000, 'x'));
    EXPECT_EQ(outcome, Outcome::timedOut);
    expectTicks(12);
    EXPECT_EQ(send(6), Outcome::timedOut);
    expectTicks(6);
    stop = true;
}

TEST_F(ConnectionTest, FullSocketThatIsReadAgain_LosesNothing) {
    std::atomic<bool> start{false};
    std::atomic<int> received{0};
    constexpr int kCount = 100;
    Peer peer({[&](int connection) {
        EXPECT_TRUE(waitUntil([&] { return start.load(); }));
        while (received < kCount && receiveHeader(connection).magic != 0)
            ++received;
    }});
    int sent = 0;
    while (post(1, std::string(15000, 'x')) == Outcome::done)
        ++sent;
    start = true;
    for (; sent < kCount; ++sent)
        ASSERT_EQ(post(kNoTimeOut, std::string(15000, 'x')), Outcome::done);
    EXPECT_TRUE(waitUntil([&] { return received == kCount; }));
    EXPECT_EQ(received, kCount);
}

TEST_F(ConnectionTest, RequestInTheMailboxThatWasNeverTaken_CountsAsNotSent) {
    Peer peer({leaveWithoutReadingTheMailbox});
    ASSERT_EQ(send(), Outcome::done);
    ASSERT_EQ(send(), Outcome::done);
    EXPECT_EQ(send(), Outcome::notSent);
}

TEST_F(ConnectionTest, RequestInTheMailboxThatWasTaken_LosesTheConnection) {
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
    ASSERT_EQ(send(), Outcome::done);
    ASSERT_EQ(send(), Outcome::done);
    EXPECT_EQ(send(), Outcome::lost);
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
            threads.emplace_back([t, &wrong] {
                FileDescriptor socket;
                connectToEndpoint(kPeerCode, Deadline::never(), socket);
                Connection connection(std::move(socket));
                MessageMemory image;
                for (int i = 0; i < 200; ++i) {
                    const int32_t ticks = t * 1000 + i;
                    const OutgoingRequest request{image, 0, ticks, Deadline::never(), nullptr};
                    ReceivedReply received;
                    if (connection.exchange(request, received) != Outcome::done) ++wrong;
                    if (firstItemText(received.image, received.size) != std::to_string(ticks)) ++wrong;
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(wrong, 0);
}
