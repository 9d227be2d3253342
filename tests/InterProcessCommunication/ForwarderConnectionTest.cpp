// Finding and launching the server, dropping the connection, and the client's identity.
#include <cstring>

#include "client/exceptions/ExceptionTypeCodes.h"
#include "client/exceptions/POSException.h"
#include "tests/InterProcessCommunication/ForwarderFixture.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::expectFailure;

using ForwarderConnectionTest = test::ForwarderFixture;

TEST_F(ForwarderConnectionTest, ConnectToPOS_WhileConnected_DoesNothing) {
    answerAlways("awake");
    forwarder.ConnectToPOS(10);
    EXPECT_TRUE(forwarder.isConnected());
    EXPECT_EQ(platform.folderLookups, 1);
    forwarder.ConnectToPOS(10);
    EXPECT_EQ(platform.folderLookups, 1);
    EXPECT_EQ(platform.sent.size(), 1u);
}

TEST_F(ForwarderConnectionTest, ConnectToPOS_IgnoresTheHint) {
    answerAlways("awake");
    for (const uint32_t hint : {0u, 10u, 0xFFFFFFFFu}) {
        MacOSXTransferObjForwarder fresh;
        fresh.ConnectToPOS(hint);
        EXPECT_TRUE(fresh.isConnected()) << hint;
    }
}

TEST_F(ForwarderConnectionTest, ConnectToPOS_WithoutTheServerApplication_ThrowsTheTextOfTheMissingKey) {
    loadTexts();
    uninstall();
    testing::internal::CaptureStdout();
    expectFailure<POSException>([&] { forwarder.ConnectToPOS(10); }, exceptionTypeCode::kPOSException, "???",
                                "It is missing.");
    testing::internal::GetCapturedStdout();
    EXPECT_FALSE(forwarder.isConnected());
}

TEST_F(ForwarderConnectionTest, ConnectToPOS_WithAServerThatNeverReplies_ThrowsTheTextOfTheCorruptKey) {
    loadTexts();
    failAlways(errAETimeout);
    testing::internal::CaptureStdout();
    expectFailure<POSException>([&] { forwarder.ConnectToPOS(10); }, exceptionTypeCode::kPOSException, "???",
                                "It is corrupt.");
    testing::internal::GetCapturedStdout();
    EXPECT_FALSE(forwarder.isConnected());
}

TEST_F(ForwarderConnectionTest, ConnectToPOS_AfterAFailedFolderLookup_IsSilentAndTriedAgain) {
    answerAlways("awake");
    platform.findFolderResult = nsvErr;
    testing::internal::CaptureStdout();
    forwarder.ConnectToPOS(10);
    testing::internal::GetCapturedStdout();
    EXPECT_FALSE(forwarder.isConnected());
    platform.findFolderResult = noErr;
    forwarder.ConnectToPOS(10);
    EXPECT_TRUE(forwarder.isConnected());
    EXPECT_EQ(platform.folderLookups, 2);
}

TEST_F(ForwarderConnectionTest, CheckConnection_OnAForwarderThatWasNeverConnected_ChangesNothing) {
    answerAlways("awake");
    forwarder.CheckConnection();
    EXPECT_FALSE(forwarder.isConnected());
    EXPECT_TRUE(platform.sent.empty());
    EXPECT_EQ(platform.folderLookups, 0);
}

TEST_F(ForwarderConnectionTest, CheckConnection_ForgetsTheConnectionWithoutAskingTheServer) {
    answerAlways("awake");
    forwarder.ConnectToPOS(10);
    platform.sent.clear();
    forwarder.CheckConnection();
    EXPECT_FALSE(forwarder.isConnected());
    EXPECT_TRUE(platform.sent.empty());
    forwarder.ConnectToPOS(10);
    EXPECT_EQ(platform.folderLookups, 2);
}

TEST_F(ForwarderConnectionTest, GetClientProcessID_IsTheSerialNumberAsItIsInMemory) {
    ProcessSerialNumber number;
    number.highLongOfPSN = 0x01020304;
    number.lowLongOfPSN = 0x05060708;
    platform.currentProcess = number;
    const CPPByteArray identity = forwarder.GetClientProcessID();
    ASSERT_EQ(identity.getSize(), 8u);
    EXPECT_EQ(std::memcmp(identity.data(), &number, 8), 0);
}

TEST_F(ForwarderConnectionTest, GetClientProcessID_OfAProcessThatHasNone_IsEmpty) {
    platform.currentProcessResult = procNotFound;
    EXPECT_EQ(forwarder.GetClientProcessID().getSize(), 0u);
}

}  // namespace
}  // namespace dovrel
