// Shared by the tests of AESendMessage: an application that receives events.
#pragma once

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <string>

#include "Events.h"
#include "TestApplication.h"

constexpr char kApplicationSignature[] = "TeSt";

class AESendMessageTest : public testing::Test {
  protected:
    OSStatus send(AEEventID id, const std::string& direct = "", long ticks = kAEDefaultTimeout) {
        Descriptor event = makeEvent(address_, id);
        putText(event, direct);
        AEDisposeDesc(reply_.get());
        return AESendMessage(event.get(), reply_.get(), kAEWaitReply, ticks);
    }

    OSStatus sendNumber(AEEventID id, long number) {
        Descriptor event = makeEvent(address_, id);
        const SInt32 value = static_cast<SInt32>(number);
        AEPutParamPtr(event.get(), keyDirectObject, typeSInt32, &value, sizeof value);
        AEDisposeDesc(reply_.get());
        return AESendMessage(event.get(), reply_.get(), kAEWaitReply, kAEDefaultTimeout);
    }

    TemporaryEnvironment environment_;
    TestApplication application_{environment_, kApplicationSignature};
    Descriptor address_ = makeAddress(kApplicationSignature);
    Descriptor reply_;
};
