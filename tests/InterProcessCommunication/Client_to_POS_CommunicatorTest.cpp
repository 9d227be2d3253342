// One exchange, the handshake and the request to quit. (ConnectToServerTest covers
// finding and launching the server.)
#include "InterProcessCommunication/Client_to_POS_Communicator.h"

#include "InterProcessCommunication/POSTransferObj.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::PlatformDouble;
using test::SentEvent;

class Client_to_POS_CommunicatorTest : public test::ChannelFixture {
  protected:
    Client_to_POS_Communicator communicator;
    IPC_Info info;
};

TEST_F(Client_to_POS_CommunicatorTest, SendData_SendsOneDataEventAndWaits10000Ticks) {
    answerAlways("answer");
    give(info, std::string("\0request\xFF", 9));
    EXPECT_EQ(communicator.SendData(info), 0);

    ASSERT_EQ(platform.sent.size(), 1u);
    const SentEvent& sent = platform.sent.front();
    EXPECT_EQ(sent.eventClass, AEEventClass{'BUFF'});
    EXPECT_EQ(sent.eventID, AEEventID{'data'});
    EXPECT_EQ(sent.directParameter, std::string("\0request\xFF", 9));
    EXPECT_EQ(sent.mode, 3);
    EXPECT_EQ(sent.priority, 0);
    EXPECT_EQ(sent.timeOutTicks, 10000);
    EXPECT_TRUE(sent.wantsReply);
    EXPECT_FALSE(sent.hasIdleOrFilter);
    EXPECT_EQ(received(info), "answer");
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_ShowsItsDescriptorsOnlyDuringTheExchange) {
    give(info, "request");
    platform.server = [this](const SentEvent&, AppleEvent* reply) {
        EXPECT_NE(info.getEvent(), nullptr);
        EXPECT_EQ(info.getReply(), reply);
        return PlatformDouble::answerWith(reply, "answer");
    };
    EXPECT_EQ(communicator.SendData(info), 0);
    EXPECT_EQ(info.getEvent(), nullptr);
    EXPECT_EQ(info.getReply(), nullptr);
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_ReleasesTheSendBufferOnlyWhenTheReplyHasArrived) {
    give(info, "request");
    failAlways(errAETimeout);
    EXPECT_EQ(communicator.SendData(info), errAETimeout);
    EXPECT_NE(info.getSendBuffer(), nullptr);
    answerAlways("answer");
    EXPECT_EQ(communicator.SendData(info), 0);
    EXPECT_EQ(info.getSendBuffer(), nullptr);
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_StoresTheReplyInTheMemoryOfTheRequest) {
    give(info, "request");
    const uint8_t* const place = info.getSendBuffer();
    answerAlways("answer");
    EXPECT_EQ(communicator.SendData(info), 0);
    EXPECT_EQ(info.getReceiveBuffer(), place);
    EXPECT_EQ(std::string(place, place + info.getReceiveSize()), "answer");
}

TEST_F(Client_to_POS_CommunicatorTest, SendAndReceive_GivesTheReceivedBytesToTheReplyObject) {
    answerAlways("answer");
    give(info, "request");
    EXPECT_EQ(communicator.SendAndReceive(info), 0);
    const std::unique_ptr<POSTransferObj> reply = info.takeReplyObject();
    EXPECT_EQ(test::toText(reply->bytes()), "answer");
    EXPECT_EQ(info.getReceiveBuffer(), nullptr);
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_WhenTheEventCannotBeMade_SendsNothing) {
    answerAlways("answer");
    platform.createEventResult = memFullErr;
    give(info, "request");
    EXPECT_EQ(communicator.SendData(info), memFullErr);
    EXPECT_TRUE(platform.sent.empty());
    EXPECT_EQ(info.getReceiveSize(), 0u);
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_WhenTheDataCannotBePut_SendsNothing) {
    answerAlways("answer");
    platform.putResult = memFullErr;
    give(info, "request");
    EXPECT_EQ(communicator.SendData(info), memFullErr);
    EXPECT_TRUE(platform.sent.empty());
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_WhenTheSendFails_ReturnsItsErrorAndHoldsNothing) {
    for (const OSErr error : {OSErr{procNotFound}, OSErr{connectionInvalid}, OSErr{errAETimeout}}) {
        failAlways(error);
        info.setReceiveBuffer(std::unique_ptr<uint8_t[]>(new uint8_t[3]), 3);
        EXPECT_EQ(communicator.SendData(info), error);
        EXPECT_EQ(info.getReceiveBuffer(), nullptr);
        EXPECT_EQ(info.getReceiveSize(), 0u);
    }
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_AnsweredWithoutADirectParameter_IsTheErrorForAMissingOne) {
    answerAlways(std::nullopt);
    give(info, "request");
    EXPECT_EQ(communicator.SendData(info), errAEDescNotFound);
    EXPECT_EQ(info.getReceiveSize(), 0u);
}

TEST_F(Client_to_POS_CommunicatorTest, SendData_AnsweredWithAnEmptyDirectParameter_IsSuccessWithoutBytes) {
    answerAlways("");
    give(info, "request");
    EXPECT_EQ(communicator.SendData(info), 0);
    EXPECT_EQ(info.getReceiveBuffer(), nullptr);
    EXPECT_EQ(info.getReceiveSize(), 0u);
}

TEST_F(Client_to_POS_CommunicatorTest, SendAndReceive_MakesTheReplyObjectOfTheReceivedBytes) {
    const POSTransferObj answer(1, 11, 14);
    answerAlways(std::string(answer.bytes().data(), answer.bytes().data() + answer.bytes().getSize()));
    give(info, "request");
    EXPECT_EQ(communicator.SendAndReceive(info), 0);
    const std::unique_ptr<POSTransferObj> reply = info.takeReplyObject();
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->bytes().compare(answer.bytes()), 0);
    EXPECT_EQ(reply->getMessageKind(), 11u);
}

TEST_F(Client_to_POS_CommunicatorTest,
       SendAndReceive_AfterAFailureAndForAnEmptyAnswer_MakesAnEmptyReplyObject) {
    give(info, "request");
    failAlways(procNotFound);
    EXPECT_EQ(communicator.SendAndReceive(info), procNotFound);
    std::unique_ptr<POSTransferObj> reply = info.takeReplyObject();
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->bytes().getSize(), 0u);

    answerAlways("");
    EXPECT_EQ(communicator.SendAndReceive(info), 0);
    reply = info.takeReplyObject();
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->bytes().getSize(), 0u);
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_SendsStartPosWithoutATerminatorAndStopsAtTheFirstAnswer) {
    answerAlways("whatever");
    EXPECT_EQ(communicator.WakeServer(1000, 5), 0);
    ASSERT_EQ(platform.sent.size(), 1u);
    const SentEvent& sent = platform.sent.front();
    EXPECT_EQ(sent.eventClass, AEEventClass{'BUFF'});
    EXPECT_EQ(sent.eventID, AEEventID{'waCl'});
    EXPECT_EQ(sent.directParameter, "startPos");
    EXPECT_EQ(sent.mode, 3);
    EXPECT_EQ(sent.priority, 0);
    EXPECT_EQ(sent.timeOutTicks, 60);
    EXPECT_TRUE(sent.wantsReply);
    EXPECT_FALSE(sent.hasIdleOrFilter);
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_CountsTicksInUnsigned32BitArithmetic) {
    answerAlways("");
    const std::vector<std::pair<uint32_t, long>> cases = {
        {0, 0},          {16, 0},    {17, 1},                     // 17 * 60 / 1000 = 1.02
        {999, 59},       {1000, 60}, {5000, 300}, {71582789, 0},  // 71582789 * 60 = 2^32 + 44
        {71599500, 1002}                                          // 71599500 * 60 = 2^32 + 1002704
    };
    for (const auto& [timeoutMs, ticks] : cases) {
        communicator.WakeServer(timeoutMs, 1);
        EXPECT_EQ(platform.sent.back().timeOutTicks, ticks) << timeoutMs;
    }
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_TriesAsOftenAsToldWithoutPauseAndReturnsTheLastError) {
    platform.server = [this](const SentEvent&, AppleEvent*) {
        return platform.sent.size() == 5 ? OSErr{connectionInvalid} : OSErr{errAETimeout};
    };
    EXPECT_EQ(communicator.WakeServer(1000, 5), connectionInvalid);
    EXPECT_EQ(platform.sent.size(), 5u);
    EXPECT_TRUE(platform.sleeps.empty());
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_AnsweredAtTheThirdAttempt_IsSuccess) {
    platform.server = [this](const SentEvent&, AppleEvent* reply) {
        if (platform.sent.size() < 3) return OSErr{procNotFound};
        return PlatformDouble::answerWith(reply, "awake");
    };
    EXPECT_EQ(communicator.WakeServer(1000, 5), 0);
    EXPECT_EQ(platform.sent.size(), 3u);
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_AnsweredWithAnEmptyDirectParameter_CountsAsAwake) {
    answerAlways("");
    EXPECT_EQ(communicator.WakeServer(1000, 5), 0);
    EXPECT_EQ(platform.sent.size(), 1u);
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_AnsweredWithoutADirectParameter_DoesNotCountAsAwake) {
    answerAlways(std::nullopt);
    EXPECT_EQ(communicator.WakeServer(1000, 5), errAEDescNotFound);
    EXPECT_EQ(platform.sent.size(), 1u);
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_WhoseTextCannotBePut_IsStillSent) {
    answerAlways("awake");
    platform.putResult = memFullErr;
    EXPECT_EQ(communicator.WakeServer(1000, 5), 0);
    EXPECT_EQ(platform.sent.front().directParameter, std::nullopt);
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_WhenTheEventCannotBeMade_SendsNothing) {
    answerAlways("awake");
    platform.createEventResult = memFullErr;
    EXPECT_EQ(communicator.WakeServer(1000, 5), memFullErr);
    EXPECT_TRUE(platform.sent.empty());
}

TEST_F(Client_to_POS_CommunicatorTest, WakeServer_WithoutAnyAttempt_SendsNothingAndIsNoSuccess) {
    answerAlways("awake");
    EXPECT_EQ(communicator.WakeServer(1000, 0), errAETimeout);
    EXPECT_TRUE(platform.sent.empty());
}

TEST_F(Client_to_POS_CommunicatorTest, QuitServer_SendsTheQuitEventAndWantsNoReply) {
    failAlways(noErr);
    EXPECT_EQ(communicator.QuitServer(), 0);
    ASSERT_EQ(platform.sent.size(), 1u);
    const SentEvent& sent = platform.sent.front();
    EXPECT_EQ(sent.eventClass, AEEventClass{'aevt'});
    EXPECT_EQ(sent.eventID, AEEventID{'quit'});
    // As in the example "quit-request" of docs/protocol.md.
    EXPECT_EQ(sent.directParameter, std::nullopt);
    EXPECT_EQ(sent.mode, 1);
    EXPECT_EQ(sent.timeOutTicks, 100);
    EXPECT_FALSE(sent.wantsReply);
}

TEST_F(Client_to_POS_CommunicatorTest, QuitServer_WithoutARunningServer_IsSuccess) {
    failAlways(procNotFound);
    EXPECT_EQ(communicator.QuitServer(), 0);
}

TEST_F(Client_to_POS_CommunicatorTest, QuitServer_ThatFailsOtherwise_ReturnsTheError) {
    failAlways(connectionInvalid);
    EXPECT_EQ(communicator.QuitServer(), connectionInvalid);
    platform.createEventResult = memFullErr;
    EXPECT_EQ(communicator.QuitServer(), memFullErr);
    EXPECT_EQ(platform.sent.size(), 1u);
}

}  // namespace
}  // namespace dovrel
