#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/exceptions/ExceptionTypeCodes.h"
#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/InterProcessCommunication/DeletionWatch.h"
#include "tests/InterProcessCommunication/ForwarderFixture.h"
#include "tests/support/UserTexts.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::expectFailure;
using test::PlatformDouble;
using test::SentEvent;
using test::toHex;

using test::kCommunicationError;

class MacOSXTransferObjForwarderTest : public test::ForwarderFixture {
  protected:
    // Replies to every handshake. The nth data event ends with the nth result, and later ones with the last
    // result. On success the reply contains the bytes of kAnswer.
    void dataEventsEndWith(const std::vector<OSErr>& results) {
        platform.server = [this, results](const SentEvent& event, AppleEvent* reply) {
            if (event.eventID != 'data') return PlatformDouble::answerWith(reply, "awake");
            const auto index = static_cast<size_t>(countSent('data')) - 1;
            const OSErr result = index < results.size() ? results[index] : results.back();
            return result == noErr ? PlatformDouble::answerWith(reply, "AsAk\1") : result;
        };
    }

    std::unique_ptr<POSTransferObj> forward() {
        POSTransferObj request(1, 10, 17);
        testing::internal::CaptureStdout();
        try {
            std::unique_ptr<POSTransferObj> reply(forwarder.ForwardTransferObj(request));
            console = testing::internal::GetCapturedStdout();
            return reply;
        } catch (CPPException*) {
            console = testing::internal::GetCapturedStdout();
            throw;
        }
    }

    std::string console;
};

TEST_F(MacOSXTransferObjForwarderTest, Forward_SendsTheWireFormAndReturnsTheAnswer) {
    dataEventsEndWith({noErr});
    const std::unique_ptr<POSTransferObj> reply = forward();
    ASSERT_EQ(platform.sent.size(), 1u);
    EXPECT_EQ(platform.sent.front().directParameter, test::toText(POSTransferObj(1, 10, 17).bytes()));
    EXPECT_EQ(toHex(reply->bytes()), "41 73 41 6B 01");
}

TEST_F(MacOSXTransferObjForwarderTest, Forward_BeforeAnyConnection_ConnectsAfterTheFirstFailedSend) {
    dataEventsEndWith({procNotFound, noErr});
    const std::unique_ptr<POSTransferObj> reply = forward();
    EXPECT_EQ(countSent('data'), 2);
    EXPECT_EQ(countSent('waCl'), 1);
    EXPECT_TRUE(forwarder.isConnected());
    EXPECT_EQ(toHex(reply->bytes()), "41 73 41 6B 01");
}

TEST_F(MacOSXTransferObjForwarderTest, Forward_SentTwentyTimesInVain_ReturnsTheLastEmptyReply) {
    for (const OSErr error : {OSErr{procNotFound}, OSErr{connectionInvalid}}) {
        SCOPED_TRACE(error);
        platform.sent.clear();
        platform.folderLookups = 0;
        dataEventsEndWith({error});
        const std::unique_ptr<POSTransferObj> reply = forward();
        ASSERT_NE(reply, nullptr);
        EXPECT_EQ(reply->bytes().getSize(), 0u);
        EXPECT_EQ(countSent('data'), 20);
        // There is a reconnection after each attempt, including the last one.
        EXPECT_EQ(platform.folderLookups, 20);
        EXPECT_EQ(countSent('waCl'), 20);
    }
}

TEST_F(MacOSXTransferObjForwarderTest, RepliesOfFailedAttempts_AreReleased) {
    test::DeletionWatch replies;
    replies.addAllOfSize(sizeof(POSTransferObj));
    dataEventsEndWith({procNotFound});
    const std::unique_ptr<POSTransferObj> reply = forward();
    EXPECT_EQ(replies.deletions(), 19);
    EXPECT_EQ(replies.living(), 1) << "the one that is handed back";
}

TEST_F(MacOSXTransferObjForwarderTest, ReplyOfTheFailedAttempt_IsReleasedWhenTheForwarderThrows) {
    loadTexts();
    for (const OSErr error : {OSErr{procNotFound}, OSErr{errAETimeout}}) {
        SCOPED_TRACE(error);
        test::DeletionWatch replies;
        replies.addAllOfSize(sizeof(POSTransferObj));
        failAlways(error);
        EXPECT_NE(test::failureOf([this] { forward(); }), nullptr);
        EXPECT_EQ(replies.deletions(), 1);
        EXPECT_EQ(replies.living(), 0);
    }
}

TEST_F(MacOSXTransferObjForwarderTest, TwentyVainAttempts_EndInTheTraderAsTheReadersFailure) {
    dataEventsEndWith({procNotFound});
    POSTransferObjTrader trader;
    trader.setForwarder(&forwarder);
    expectFailure<StructuredReaderNotInitializedException>([&] { trader.unregisterApplication(5); },
                                                           exceptionTypeCode::kStructuredReaderNotInitialized,
                                                           "3841954A010E: ", "1");
    EXPECT_EQ(countSent('data'), 20);
}

TEST_F(MacOSXTransferObjForwarderTest, Forward_AnsweredAtTheTwentiethAttempt_ReturnsTheAnswer) {
    std::vector<OSErr> results(19, connectionInvalid);
    results.push_back(noErr);
    dataEventsEndWith(results);
    EXPECT_EQ(toHex(forward()->bytes()), "41 73 41 6B 01");
    EXPECT_EQ(countSent('data'), 20);
    EXPECT_EQ(platform.folderLookups, 19);
}

TEST_F(MacOSXTransferObjForwarderTest, AnyOtherFailure_ThrowsAtOnceWithoutASecondAttempt) {
    for (const OSErr error :
         {OSErr{errAETimeout}, OSErr{errAEEventNotHandled}, OSErr{memFullErr}, OSErr{-1}}) {
        SCOPED_TRACE(error);
        platform.sent.clear();
        dataEventsEndWith({error});
        expectFailure<POSException>([&] { forward(); }, exceptionTypeCode::kPOSException, "???",
                                    kCommunicationError);
        EXPECT_EQ(platform.sent.size(), 1u);
    }
}

TEST_F(MacOSXTransferObjForwarderTest, OtherFailureAfterAReconnection_ThrowsWithoutAThirdAttempt) {
    dataEventsEndWith({procNotFound, errAETimeout});
    expectFailure<POSException>([&] { forward(); }, exceptionTypeCode::kPOSException, "???",
                                kCommunicationError);
    EXPECT_EQ(countSent('data'), 2);
}

TEST_F(MacOSXTransferObjForwarderTest, AnswerWithoutADirectParameter_IsTheCommunicationError) {
    answerAlways(std::nullopt);
    expectFailure<POSException>([&] { forward(); }, exceptionTypeCode::kPOSException, "???",
                                kCommunicationError);
    EXPECT_EQ(platform.sent.size(), 1u);
}

TEST_F(MacOSXTransferObjForwarderTest, EmptyAnswer_IsGivenAsAnEmptyReply) {
    answerAlways("");
    EXPECT_EQ(forward()->bytes().getSize(), 0u);
    EXPECT_EQ(platform.sent.size(), 1u);
}

TEST_F(MacOSXTransferObjForwarderTest, RequestOfNoBytes_IsNeverHandedToTheChannel) {
    answerAlways("answer");
    POSTransferObj request;
    request.copyBytesFrom(CPPByteArray());
    expectFailure<POSException>([&] { forwarder.ForwardTransferObj(request); },
                                exceptionTypeCode::kPOSException, "???", kCommunicationError);
    EXPECT_TRUE(platform.created.empty());
    EXPECT_TRUE(platform.sent.empty());
}

TEST_F(MacOSXTransferObjForwarderTest, ServerThatCannotBeBroughtBack_EndsTheAttempts) {
    loadTexts();
    failAlways(procNotFound);
    expectFailure<POSException>([&] { forward(); }, exceptionTypeCode::kPOSException, "???",
                                "It is corrupt.");
    EXPECT_EQ(countSent('data'), 1);
    EXPECT_FALSE(forwarder.isConnected());
    EXPECT_NE(console.find("error: -600\n"), std::string::npos);
}

TEST_F(MacOSXTransferObjForwarderTest, LostConnection_IsForgottenBeforeTheReconnection) {
    dataEventsEndWith({noErr});
    forwarder.ConnectToPOS(10);
    ASSERT_TRUE(forwarder.isConnected());
    platform.findFolderResult = fnfErr;
    dataEventsEndWith({noErr, connectionInvalid, errAETimeout});
    platform.sent.clear();
    forward();
    expectFailure<POSException>([&] { forward(); }, exceptionTypeCode::kPOSException, "???",
                                kCommunicationError);
    EXPECT_FALSE(forwarder.isConnected());
}

}  // namespace
}  // namespace dovrel
