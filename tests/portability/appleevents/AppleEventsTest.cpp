// Contract tests of the handler table. The events go to this process itself,
// so the handler is called directly.
#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "Events.h"

namespace {

enum { kClass = 'clas', kOtherClass = 'othr', kID = 'idid', kOtherID = 'othi' };

// Puts the name of the handler into the direct parameter of the reply.
OSErr answerName(const AppleEvent*, AppleEvent* reply, SRefCon refcon) {
    const auto* name = reinterpret_cast<const char*>(refcon);
    return AEPutParamPtr(reply, keyDirectObject, typeChar, name, static_cast<Size>(std::string(name).size()));
}

OSErr decline(const AppleEvent*, AppleEvent*, SRefCon) {
    return errAEEventNotHandled;
}

SRefCon toRefcon(const char* name) {
    return reinterpret_cast<SRefCon>(const_cast<char*>(name));
}

class AppleEvents : public testing::Test {
  protected:
    ~AppleEvents() override {
        for (const AEEventClass eventClass : {AEEventClass{kClass}, AEEventClass{typeWildCard}}) {
            for (const AEEventID id : {AEEventID{kID}, AEEventID{typeWildCard}}) {
                while (AERemoveEventHandler(eventClass, id, nullptr, false) == noErr) {
                }
            }
        }
    }

    static void install(AEEventClass eventClass, AEEventID id, const char* name) {
        ASSERT_EQ(AEInstallEventHandler(eventClass, id, answerName, toRefcon(name), false), noErr);
    }

    // Returns the reply of the handler for that event, or the error.
    static std::string ask(AEEventClass eventClass, AEEventID id) {
        Descriptor event = ownEvent(eventClass, id);
        Descriptor reply;
        const OSStatus status = AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout);
        return status == noErr ? toText(reply) : std::to_string(static_cast<int>(status));
    }

    static Descriptor ownEvent(AEEventClass eventClass, AEEventID id) {
        const ProcessSerialNumber self = {0, kCurrentProcess};
        Descriptor address;
        AECreateDesc(typeProcessSerialNumber, &self, sizeof self, address.get());
        return makeEvent(address, id, eventClass);
    }
};

}  // namespace

TEST_F(AppleEvents, Install_HandlerGetsEventAndRefcon) {
    install(kClass, kID, "mine");
    EXPECT_EQ(ask(kClass, kID), "mine");
}

TEST_F(AppleEvents, Install_SecondForSameEvent_ReplacesTheFirst) {
    install(kClass, kID, "first");
    install(kClass, kID, "second");
    EXPECT_EQ(ask(kClass, kID), "second");
    EXPECT_EQ(AERemoveEventHandler(kClass, kID, answerName, false), noErr);
    EXPECT_EQ(ask(kClass, kID), std::to_string(errAEEventNotHandled));
}

TEST_F(AppleEvents, Install_NullHandler_IsAnError) {
    EXPECT_NE(AEInstallEventHandler(kClass, kID, nullptr, SRefCon(), false), noErr);
}

TEST_F(AppleEvents, Dispatch_WithoutHandler_IsNotHandled) {
    EXPECT_EQ(ask(kClass, kID), std::to_string(errAEEventNotHandled));
}

TEST_F(AppleEvents, Dispatch_ExactMatchGoesBeforeWildcards) {
    install(typeWildCard, typeWildCard, "anything");
    install(kClass, typeWildCard, "class");
    install(kClass, kID, "exact");
    EXPECT_EQ(ask(kClass, kID), "exact");
    EXPECT_EQ(ask(kClass, kOtherID), "class");
    EXPECT_EQ(ask(kOtherClass, kOtherID), "anything");
}

TEST_F(AppleEvents, Dispatch_WildcardClass_TakesTheIdOfAnyClass) {
    install(typeWildCard, kID, "id");
    EXPECT_EQ(ask(kClass, kID), "id");
    EXPECT_EQ(ask(kOtherClass, kID), "id");
    EXPECT_EQ(ask(kClass, kOtherID), std::to_string(errAEEventNotHandled));
}

TEST_F(AppleEvents, Dispatch_HandlerThatDeclines_LetsALessSpecificOneTry) {
    ASSERT_EQ(AEInstallEventHandler(kClass, kID, decline, SRefCon(), false), noErr);
    install(kClass, typeWildCard, "class");
    EXPECT_EQ(ask(kClass, kID), "class");
}

TEST_F(AppleEvents, Remove_TakesOnlyTheInstalledHandler) {
    install(kClass, kID, "mine");
    EXPECT_EQ(AERemoveEventHandler(kClass, kID, decline, false), errAEHandlerNotFound);
    EXPECT_EQ(ask(kClass, kID), "mine");
    EXPECT_EQ(AERemoveEventHandler(kClass, kID, answerName, false), noErr);
    EXPECT_EQ(AERemoveEventHandler(kClass, kID, answerName, false), errAEHandlerNotFound);
}

TEST_F(AppleEvents, Dispatch_ToOneself_RunsInTheCallingThread) {
    static pthread_t handlerThread;
    handlerThread = pthread_t();
    const AEEventHandlerUPP note = [](const AppleEvent*, AppleEvent*, SRefCon) -> OSErr {
        handlerThread = pthread_self();
        return noErr;
    };
    ASSERT_EQ(AEInstallEventHandler(kClass, kID, note, SRefCon(), false), noErr);
    Descriptor event = ownEvent(kClass, kID);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAENoReply, kAEDefaultTimeout), noErr);
    EXPECT_TRUE(pthread_equal(handlerThread, pthread_self()));
}

TEST_F(AppleEvents, Dispatch_ToOneselfWithoutReply_HandlerGetsANullReply) {
    static DescType replyType;
    replyType = 0;
    const AEEventHandlerUPP note = [](const AppleEvent*, AppleEvent* reply, SRefCon) -> OSErr {
        replyType = reply->descriptorType;
        return noErr;
    };
    ASSERT_EQ(AEInstallEventHandler(kClass, kID, note, SRefCon(), false), noErr);
    Descriptor event = ownEvent(kClass, kID);
    AEDesc reply = {0x5A5A5A5A, nullptr};
    EXPECT_EQ(AESendMessage(event.get(), &reply, kAENoReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(replyType, DescType{typeNull});
    EXPECT_EQ(reply.descriptorType, DescType{typeNull});
}

TEST_F(AppleEvents, Dispatch_HandlerFails_NumberIsInTheReply) {
    const AEEventHandlerUPP fail = [](const AppleEvent*, AppleEvent*, SRefCon) -> OSErr {
        return userCanceledErr;
    };
    ASSERT_EQ(AEInstallEventHandler(kClass, kID, fail, SRefCon(), false), noErr);
    Descriptor event = ownEvent(kClass, kID);
    Descriptor reply;
    EXPECT_EQ(AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(parseNumber(reply, keyErrorNumber), -128);
}

TEST_F(AppleEvents, Dispatch_ReplyIsAnAnswerWithTheEventsReturnID) {
    install(kClass, kID, "mine");
    Descriptor event = ownEvent(kClass, kID);
    Descriptor reply;
    ASSERT_EQ(AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    OSType replyClass = 0;
    OSType replyID = 0;
    SInt32 sent = -1;
    SInt32 received = -2;
    AEGetAttributePtr(reply.get(), keyEventClassAttr, typeType, nullptr, &replyClass, sizeof replyClass,
                      nullptr);
    AEGetAttributePtr(reply.get(), keyEventIDAttr, typeType, nullptr, &replyID, sizeof replyID, nullptr);
    AEGetAttributePtr(event.get(), keyReturnIDAttr, typeSInt32, nullptr, &sent, sizeof sent, nullptr);
    AEGetAttributePtr(reply.get(), keyReturnIDAttr, typeSInt32, nullptr, &received, sizeof received, nullptr);
    EXPECT_EQ(replyClass, OSType{kCoreEventClass});
    EXPECT_EQ(replyID, OSType{kAEAnswer});
    EXPECT_EQ(sent, received);
}

TEST_F(AppleEvents, Dispatch_ToOnesOwnProcessId_IsToOneself) {
    install(kClass, kID, "mine");
    const pid_t self = getpid();
    Descriptor address;
    AECreateDesc(typeKernelProcessID, &self, sizeof self, address.get());
    Descriptor event = makeEvent(address, kID, kClass);
    Descriptor reply;
    EXPECT_EQ(AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(toText(reply), "mine");
}

TEST_F(AppleEvents, Dispatch_ToOnesOwnSerialNumber_IsToOneself) {
    install(kClass, kID, "mine");
    ProcessSerialNumber self = {0, 0};
    ASSERT_EQ(GetCurrentProcess(&self), noErr);
    Descriptor address;
    AECreateDesc(typeProcessSerialNumber, &self, sizeof self, address.get());
    Descriptor event = makeEvent(address, kID, kClass);
    Descriptor reply;
    EXPECT_EQ(AESendMessage(event.get(), reply.get(), kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(toText(reply), "mine");
}
