// How the sender of events uses connections: it keeps them, replaces those that broke, and names what went wrong.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Events.h"
#include "tests/portability/support/Peer.h"
#include "tests/support/TemporaryEnvironment.h"

using namespace portability;

namespace {

class EventSenderPeersTest : public testing::Test {
  protected:
    OSStatus send(long ticks = kAEDefaultTimeout, AESendMode mode = kAEWaitReply) {
        Descriptor event = makeEvent(address_, kEcho);
        putText(event, "request");
        AEDisposeDesc(reply_.get());
        return AESendMessage(event.get(), reply_.get(), mode, ticks);
    }

    TemporaryEnvironment environment_;
    Descriptor address_ = makeAddress(kPeerSignature);
    Descriptor reply_;
};

}  // namespace

TEST_F(EventSenderPeersTest, Reply_WithAResult_IsTheResultOfTheSend) {
    Peer peer(
        {[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "answer", -1708)); }});
    EXPECT_EQ(send(), errAEEventNotHandled);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
}

TEST_F(EventSenderPeersTest, Request_CarriesModeAndTimeOut) {
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

TEST_F(EventSenderPeersTest, SilentPeer_IsTimeout_AndTheConnectionIsUsedAgain) {
    Peer peer({[](int connection) {
        receiveHeader(connection);
        waitForMore(connection);
    }});
    EXPECT_EQ(send(12), errAETimeout);
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventSenderPeersTest, PeerThatClosesAfterTheRequest_IsConnectionInvalid) {
    Peer peer({[](int connection) { receiveHeader(connection); }});
    EXPECT_EQ(send(), connectionInvalid);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
}

TEST_F(EventSenderPeersTest, ReplyWithADamagedImage_IsConnectionInvalid_AndItsConnectionIsNotUsedAgain) {
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
    EXPECT_EQ(toText(reply_), "two");
}

TEST_F(EventSenderPeersTest, ReplyInTheFormatOfAnotherBuild_IsConnectionInvalid) {
    Peer peer({[](int connection) {
        Bytes packet = reply(receiveHeader(connection).id, "answer");
        constexpr uint32_t kEarlierMark = 0x41457631;
        std::memcpy(packet.data(), &kEarlierMark, sizeof kEarlierMark);
        sendRaw(connection, packet);
        waitForMore(connection);
    }});
    EXPECT_EQ(send(), connectionInvalid);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
}

TEST_F(EventSenderPeersTest, KeptConnection_IsUsedForTheNextSend) {
    Peer peer({[](int connection) {
        for (int i = 0; i < 3; ++i)
            sendRaw(connection, reply(receiveHeader(connection).id, std::to_string(i)));
        waitForMore(connection);
    }});
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(send(), noErr);
        EXPECT_EQ(toText(reply_), std::to_string(i));
    }
    EXPECT_EQ(send(0, kAENoReply), noErr);
}

TEST_F(EventSenderPeersTest, KeptConnectionThatBroke_IsReplacedOnceAndUnseen) {
    Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "one")); },
               [](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "two")); }});
    ASSERT_EQ(send(), noErr);
    peer.waitUntilClosed(1);
    ASSERT_EQ(send(), noErr) << "the peer had closed the first connection";
    EXPECT_EQ(toText(reply_), "two");
}

TEST_F(EventSenderPeersTest, KeptConnectionThatBroke_AndNobodyThere_IsProcNotFound) {
    {
        Peer peer({[](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "one")); }});
        ASSERT_EQ(send(), noErr);
    }
    EXPECT_EQ(send(), procNotFound);
    EXPECT_EQ(send(100, kAENoReply), procNotFound);
}

TEST_F(EventSenderPeersTest, RequestInTheMailboxThatWasNeverTaken_IsSentAgainToTheNextPeer) {
    Peer peer({leaveWithoutReadingTheMailbox,
               [](int connection) { sendRaw(connection, reply(receiveHeader(connection).id, "two")); }});
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    ASSERT_EQ(send(), noErr);
    EXPECT_EQ(toText(reply_), "two");
}
