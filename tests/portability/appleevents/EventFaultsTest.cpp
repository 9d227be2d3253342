// Makes each allocation fail, alone or together with all later ones. The calls must return memFullErr,
// nothing may be lost, and the next attempt must work.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <string>

#include "Events.h"
#include "TestApplication.h"
#include "tests/support/HeapWatch.h"

namespace {

using dovrel::test::HeapWatch;

constexpr char kSignature[] = "TeSt";
constexpr size_t kMostRequests = 1000;

OSErr answer(const AppleEvent*, AppleEvent* reply, SRefCon) {
    return AEPutParamPtr(reply, keyDirectObject, typeChar, "answer", 6);
}

// Runs a complete exchange with that address. Returns the first error, and frees everything.
OSStatus exchange(DescType addressType, const void* address, Size addressSize, const std::string& text,
                  std::string& answer) {
    AEDesc target = {typeNull, nullptr};
    AppleEvent event = {typeNull, nullptr};
    AppleEvent reply = {typeNull, nullptr};
    OSStatus status = AECreateDesc(addressType, address, addressSize, &target);
    if (status == noErr) status = AECreateAppleEvent(kTestClass, kEcho, &target, -1, 0, &event);
    if (status == noErr) {
        status =
            AEPutParamPtr(&event, keyDirectObject, typeChar, text.data(), static_cast<Size>(text.size()));
    }
    if (status == noErr) status = AESendMessage(&event, &reply, kAEWaitReply, kAEDefaultTimeout);
    Size size = 0;
    if (status == noErr) {
        status = AEGetParamPtr(&reply, keyDirectObject, typeChar, nullptr, &answer[0],
                               static_cast<Size>(answer.size()), &size);
    }
    const bool isNullAfterError = status == noErr || reply.descriptorType == typeNull;
    AEDisposeDesc(&target);
    AEDisposeDesc(&event);
    AEDisposeDesc(&reply);
    return isNullAfterError ? status : OSStatus{paramErr};
}

template <class Exchange>
void failEachRequest(HeapWatch::Refusal refusal, Exchange exchangeOnce) {
    size_t nth = 1;
    for (bool happened = true; happened && nth < kMostRequests; ++nth) {
        OSStatus status;
        {
            HeapWatch heap;
            heap.refuse(nth, refusal);
            status = exchangeOnce();
            happened = heap.hasRefused();
        }
        if (happened) {
            ASSERT_TRUE(status == memFullErr || status == noErr) << nth << ": " << static_cast<long>(status);
        }
        ASSERT_EQ(exchangeOnce(), noErr) << nth;
    }
    EXPECT_GT(nth, 2u) << "no request failed at all";
    EXPECT_LT(nth, kMostRequests);
}

class EventFaultsTest : public testing::TestWithParam<HeapWatch::Refusal> {
  protected:
    TemporaryEnvironment environment_;
};

}  // namespace

TEST_P(EventFaultsTest, ExchangeWithAnotherProcess) {
    TestApplication application(environment_, kSignature);
    ASSERT_TRUE(application.start());
    const OSType signature = 'TeSt';
    const std::string small(100, 's');
    const std::string medium(5000, 'm');
    const std::string large(100000, 'l');
    std::string answer(200000, ' ');
    failEachRequest(GetParam(), [&] {
        OSStatus status = noErr;
        for (const std::string* text : {&small, &medium, &large}) {
            status = exchange(typeApplSignature, &signature, sizeof signature, *text, answer);
            if (status != noErr) break;
        }
        return status;
    });
}

TEST_P(EventFaultsTest, FirstExchangeOfAConnection) {
    TestApplication application(environment_, kSignature);
    ASSERT_TRUE(application.start());
    const OSType signature = 'TeSt';
    const std::string text = "hello";
    std::string answer(100, ' ');
    std::string root = getenv("POS_SYSTEM_ROOT");
    root.reserve(2 * kMostRequests + root.size());
    failEachRequest(GetParam(), [&] {
        // A different name of the same root needs a new connection.
        root += '/';
        setenv("POS_SYSTEM_ROOT", root.c_str(), 1);
        return exchange(typeApplSignature, &signature, sizeof signature, text, answer);
    });
}

TEST_P(EventFaultsTest, ExchangeWithOneself) {
    ASSERT_EQ(AEInstallEventHandler(kTestClass, kEcho, answer, SRefCon(), false), noErr);
    const ProcessSerialNumber self = {0, 2};
    const std::string text(600, 't');
    std::string bytes(100, ' ');
    failEachRequest(GetParam(), [&] {
        const OSStatus status = exchange(typeProcessSerialNumber, &self, sizeof self, text, bytes);
        // The handler could not put its parameter, and returned that error.
        return status == errAEDescNotFound ? OSStatus{memFullErr} : status;
    });
    AERemoveEventHandler(kTestClass, kEcho, nullptr, false);
}

TEST_P(EventFaultsTest, InstallingAHandler) {
    failEachRequest(GetParam(), [] {
        OSErr status = noErr;
        for (AEEventID id = 0; id < 100 && status == noErr; ++id) {
            status = AEInstallEventHandler('many', id, answer, SRefCon(), false);
        }
        for (AEEventID id = 0; id < 100; ++id)
            AERemoveEventHandler('many', id, nullptr, false);
        return status;
    });
}

INSTANTIATE_TEST_SUITE_P(Durations, EventFaultsTest,
                         testing::Values(HeapWatch::Refusal::kOnce, HeapWatch::Refusal::kForever),
                         [](const auto& given) {
                             return given.param == HeapWatch::Refusal::kOnce ? "Once" : "ForGood";
                         });
