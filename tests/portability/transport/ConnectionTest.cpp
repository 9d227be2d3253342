// Sending to peers that misbehave.
#include "portability/transport/Connection.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <atomic>
#include <string>
#include <vector>

#include "ConnectionTest.h"

using namespace portability;

TEST_F(ConnectionTest, Reply_WithTheIdOfTheRequest_IsTheAnswer) {
    Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer")); }});
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "answer");
}

TEST_F(ConnectionTest, Reply_WithAResult_IsTheResultOfTheSend) {
    Peer peer(
        {[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer", -1708)); }});
    EXPECT_EQ(send(), errAEEventNotHandled);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
}

TEST_F(ConnectionTest, Request_CarriesModeAndTimeOut) {
    FrameHeader seen;
    {
        Peer peer({[&seen](int connection) {
            seen = receiveHeader(connection);
            sendRaw(connection, reply(seen.id, ""));
        }});
        ASSERT_EQ(send(123, kAEWaitReply | kAENeverInteract), noErr);
    }
    EXPECT_EQ(seen.sendMode, kAEWaitReply | kAENeverInteract);
    EXPECT_EQ(seen.timeOutInTicks, 123);
}

TEST_F(ConnectionTest, SilentPeer_TimesOutAtTheTick) {
    Peer peer({[](int connection) {
        receiveHeader(connection);
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), errAETimeout);
    expectTicks(12);
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(ConnectionTest, PeerThatClosesAfterTheRequest_IsConnectionInvalid) {
    Peer peer({[](int connection) { receiveHeader(connection); }});
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(ConnectionTest, PeerThatClosesWithoutReading_IsConnectionInvalid) {
    Peer peer({[](int connection) {
        pollfd waited{connection, POLLIN, 0};
        poll(&waited, 1, -1);
    }});
    EXPECT_EQ(send(), connectionInvalid);
}

TEST_F(ConnectionTest, MalformedReplies_AreConnectionInvalid) {
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
        EXPECT_EQ(send(), connectionInvalid);
        EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
    }
}

TEST_F(ConnectionTest, ReplyWithADamagedImage_IsConnectionInvalid_AndItsConnectionIsNotUsedAgain) {
    const auto damaged = [](int connection) {
        const Bytes image = itemBytes(keyDirectObject, "text", 2, 5000);
        FrameHeader header;
        header.kind = FrameKind::reply;
        header.id = receiveHeader(connection).id;
        header.imageSize = static_cast<uint32_t>(image.size());
        sendRaw(connection, headerBytes(header) + image);
        waitForMore(connection);
    };
    Peer peer(
        {damaged, [](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "two")); }});
    EXPECT_EQ(send(), connectionInvalid);
    EXPECT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "two");
}

TEST_F(ConnectionTest, LateReply_OnTheSameConnection_IsNotTheNextAnswer) {
    Peer peer({[](int connection) {
        const FrameHeader first = receiveHeader(connection);
        const FrameHeader second = receiveHeader(connection);
        sendRaw(connection, reply(first.id, "late"));
        sendRaw(connection, reply(second.id, "in time"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(1), errAETimeout);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "in time");
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(ConnectionTest, LateReply_ThatIsThereBeforeTheNextRequest_IsDropped) {
    std::atomic<bool> timedOut{false};
    std::atomic<bool> answered{false};
    Peer peer({[&](int connection) {
        const FrameHeader first = receiveHeader(connection);
        while (!timedOut)
            std::this_thread::yield();
        sendRaw(connection, reply(first.id, "late"));
        answered = true;
        sendRaw(connection, reply(receiveHeader(connection).id, "in time"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(0), errAETimeout);
    timedOut = true;
    while (!answered)
        std::this_thread::yield();
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "in time");
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(ConnectionTest, SameReplyTwice_IsConnectionInvalid) {
    Peer peer({[](int connection) {
        const FrameHeader first = receiveHeader(connection);
        sendRaw(connection, reply(first.id, "once"));
        receiveHeader(connection);
        sendRaw(connection, reply(first.id, "twice"));
        waitForMore(connection);
    }});
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(send(), connectionInvalid);
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
    EXPECT_EQ(send(12), errAETimeout);
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
        while (!answerNow)
            std::this_thread::yield();
        sendRaw(connection, reply(late.id, "late"));
        sendRaw(connection, reply(next.id, "answer"));
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), errAETimeout);
    expectTicks(12);
    answerNow = true;
    EXPECT_EQ(send(), noErr);
    EXPECT_EQ(textOf(reply_), "answer");
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(ConnectionTest, PeerThatReadsNothing_FullSocket_TimesOutAtTheTick) {
    std::atomic<bool> stop{false};
    Peer peer({[&stop](int) {
        while (!stop)
            std::this_thread::yield();
    }});
    OSStatus status = noErr;
    for (int i = 0; i < 1000 && status == noErr; ++i)
        status = send(12, kAENoReply, std::string(15000, 'x'));
    EXPECT_EQ(status, errAETimeout);
    expectTicks(12);
    EXPECT_EQ(send(6), errAETimeout);
    expectTicks(6);
    stop = true;
}

TEST_F(ConnectionTest, FullSocketThatIsReadAgain_LosesNothing) {
    std::atomic<bool> start{false};
    std::atomic<int> received{0};
    constexpr int kCount = 100;
    Peer peer({[&](int connection) {
        while (!start)
            std::this_thread::yield();
        while (received < kCount && receiveHeader(connection).magic != 0)
            ++received;
    }});
    int sent = 0;
    while (send(1, kAENoReply, std::string(15000, 'x')) == noErr)
        ++sent;
    start = true;
    for (; sent < kCount; ++sent)
        ASSERT_EQ(send(kNoTimeOut, kAENoReply, std::string(15000, 'x')), noErr);
    while (received < kCount)
        std::this_thread::yield();
    EXPECT_EQ(received, kCount);
}
