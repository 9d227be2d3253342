// Contract tests of what AESend does in addition to AESendMessage.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "Events.h"
#include "TestApplication.h"

namespace {

constexpr char kSignature[] = "TeSt";

int idleCalls;
UInt16 idleKind;
const TestApplication* heldApplication;

Boolean countAndGoOn(EventRecord* event, SInt32* sleepTime, RgnHandle*) {
    ++idleCalls;
    idleKind = event->what;
    *sleepTime = 1;
    if (idleCalls == 3) heldApplication->letGo();
    return false;
}

Boolean giveUp(EventRecord*, SInt32*, RgnHandle*) {
    ++idleCalls;
    return true;
}

class AESendTest : public testing::Test {
  protected:
    AESendTest() {
        idleCalls = 0;
        idleKind = 0x5A5A;
        heldApplication = &application_;
    }

    TemporaryEnvironment environment_;
    TestApplication application_{environment_, kSignature};
    Descriptor address_ = makeAddress(kSignature);
    Descriptor reply_;
};

}  // namespace

TEST_F(AESendTest, Answer_ComesBack) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kEcho);
    putText(event, "through AESend");
    ASSERT_EQ(AESend(event.get(), reply_.get(), kAEWaitReply, kAENormalPriority, 10000, nullptr, nullptr),
              noErr);
    EXPECT_EQ(toText(reply_), "through AESend");
}

TEST_F(AESendTest, ApplicationNotRunning_IsProcNotFound) {
    Descriptor event = makeEvent(address_, kEcho);
    EXPECT_EQ(AESend(event.get(), reply_.get(), kAEWaitReply, kAENormalPriority, 10000, nullptr, nullptr),
              procNotFound);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
}

TEST_F(AESendTest, ServerThatNeverAnswers_FiveSendsOfOneTickEach_TimeOut) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kHold);
    putText(event, "startPos");
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(AESend(event.get(), reply_.get(), kAEWaitReply, kAENormalPriority, 1, nullptr, nullptr),
                  errAETimeout);
    }
}

TEST_F(AESendTest, IdleProcedure_IsCalledWithNullEventsUntilTheAnswer) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kHold);
    putText(event, "after a while");
    ASSERT_EQ(
        AESend(event.get(), reply_.get(), kAEWaitReply, kAENormalPriority, kNoTimeOut, countAndGoOn, nullptr),
        noErr);
    EXPECT_EQ(toText(reply_), "after a while");
    EXPECT_GE(idleCalls, 3);
    EXPECT_EQ(idleKind, 0) << "a null event";
}

TEST_F(AESendTest, IdleProcedureThatAnswersTrue_CancelsTheWait) {
    ASSERT_TRUE(application_.start());
    Descriptor event = makeEvent(address_, kHold);
    putText(event, "too late");
    EXPECT_EQ(AESend(event.get(), reply_.get(), kAEWaitReply, kAENormalPriority, kNoTimeOut, giveUp, nullptr),
              errAEWaitCanceled);
    EXPECT_EQ(idleCalls, 1);
    EXPECT_EQ(reply_.desc.descriptorType, DescType{typeNull});
    application_.letGo();

    Descriptor next = makeEvent(address_, kEcho);
    putText(next, "in time");
    ASSERT_EQ(AESend(next.get(), reply_.get(), kAEWaitReply, kAENormalPriority, 10000, nullptr, nullptr),
              noErr);
    EXPECT_EQ(toText(reply_), "in time");
}

TEST_F(AESendTest, SuspendedEvent_GetsNoReplyWhenItsHandlerReturns) {
    ASSERT_TRUE(application_.start());
    Descriptor suspended = makeEvent(address_, kSuspend);
    putText(suspended, "suspended");
    constexpr long kTicks = 20;
    EXPECT_EQ(AESendMessage(suspended.get(), reply_.get(), kAEWaitReply, kTicks), errAETimeout);
    EXPECT_EQ(application_.nextReport(), 's');
    Descriptor event = makeEvent(address_, kEcho);
    putText(event, "the next");
    ASSERT_EQ(AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(toText(reply_), "the next");
}

TEST_F(AESendTest, SuspendedEvent_OfAnApplicationThatEnds_IsConnectionInvalid) {
    ASSERT_TRUE(application_.start());
    std::thread end([this] {
        EXPECT_EQ(application_.nextReport(), 's');
        application_.kill();
    });
    Descriptor suspended = makeEvent(address_, kSuspend);
    putText(suspended, "suspended");
    EXPECT_EQ(AESendMessage(suspended.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout),
              connectionInvalid);
    end.join();
}

TEST_F(AESendTest, SuspendTheCurrentEvent_OfWhatIsNoEvent_IsAnError) {
    EXPECT_EQ(AESuspendTheCurrentEvent(address_.get()), errAENotAEDesc);
}
