// Which target each kind of address selects.
#include <ApplicationServices/ApplicationServices.h>
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Events.h"
#include "tests/support/TemporaryEnvironment.h"

namespace {

class EventSenderTest : public testing::Test {
  protected:
    static OSStatus sendTo(DescType type, const void* data, Size size) {
        Descriptor address;
        AECreateDesc(type, data, size, address.get());
        Descriptor event = makeEvent(address, kEcho);
        Descriptor reply;
        return AESendMessage(event.get(), reply.get(), kAEWaitReply, 10);
    }

    TemporaryEnvironment environment_;
};

}  // namespace

TEST_F(EventSenderTest, Signature_OfNobody_IsProcNotFound) {
    EXPECT_EQ(sendTo(typeApplSignature, "EBON", 4), procNotFound);
    EXPECT_EQ(sendTo(typeApplSignature, "EBON\0\0\0\0", 8), procNotFound);
}

TEST_F(EventSenderTest, Signature_ShorterThanFourBytes_IsProcNotFound) {
    EXPECT_EQ(sendTo(typeApplSignature, "EBO", 3), procNotFound);
    EXPECT_EQ(sendTo(typeApplSignature, nullptr, 0), procNotFound);
}

TEST_F(EventSenderTest, OtherProcesses_AreNotReachedByTheirNumbers) {
    const pid_t parent = getppid();
    EXPECT_EQ(sendTo(typeKernelProcessID, &parent, sizeof parent), procNotFound);
    ProcessSerialNumber number = {0, 0};
    EXPECT_EQ(sendTo(typeProcessSerialNumber, &number, sizeof number), procNotFound);
    if (GetProcessForPID(parent, &number) == noErr) {
        EXPECT_EQ(sendTo(typeProcessSerialNumber, &number, sizeof number), procNotFound);
    }
}

TEST_F(EventSenderTest, CutNumbers_AreProcNotFound) {
    const ProcessSerialNumber self = {0, kCurrentProcess};
    EXPECT_EQ(sendTo(typeProcessSerialNumber, &self, sizeof self - 1), procNotFound);
    const pid_t process = getpid();
    EXPECT_EQ(sendTo(typeKernelProcessID, &process, sizeof process - 1), procNotFound);
}

TEST_F(EventSenderTest, OtherKindsOfAddresses_AreUnknown) {
    EXPECT_EQ(sendTo(typeApplicationBundleID, "a.b", 3), errAEUnknownAddressType);
    EXPECT_EQ(sendTo('odd ', "EBON", 4), errAEUnknownAddressType);
}

TEST_F(EventSenderTest, NoAddress_IsUnknown) {
    const Descriptor none;
    Descriptor event = makeEvent(none, kEcho);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAENoReply, 10), errAEUnknownAddressType);
}

TEST_F(EventSenderTest, QueuedReply_IsRefused) {
    Descriptor event = makeEvent(makeAddress("NOBO"), kEcho);
    EXPECT_EQ(AESendMessage(event.get(), nullptr, kAEQueueReply, 10), errAEUnknownSendMode);
}
