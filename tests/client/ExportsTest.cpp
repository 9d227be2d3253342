#include <cstdlib>

#include "tests/client/SessionTest.h"

namespace dovrel {
namespace {

/// The exported functions as a host sees them, with the real platform parts and without an installed server.
class ExportsTest : public test::SystemRootTest {
  protected:
    ~ExportsTest() override {
        if (currentSession() != nullptr) TerminatePOS();
    }
};

TEST_F(ExportsTest, InitializePOS_Returns0AndMakesTheSession) {
    EXPECT_EQ(InitializePOS(), 0u);
    EXPECT_NE(currentSession(), nullptr);
}

TEST_F(ExportsTest, InitializePOS_Twice_Returns0AndLeavesTheSession) {
    ASSERT_EQ(InitializePOS(), 0u);
    const auto* const session = currentSession();
    EXPECT_EQ(InitializePOS(), 0u);
    EXPECT_EQ(currentSession(), session);
}

TEST_F(ExportsTest, TerminatePOS_Returns0AndEndsTheSession) {
    ASSERT_EQ(InitializePOS(), 0u);
    EXPECT_EQ(TerminatePOS(), 0u);
    EXPECT_EQ(currentSession(), nullptr);
}

TEST_F(ExportsTest, InitializePOS_AfterTerminatePOS_BuildsASessionAgain) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(InitializePOS(), 0u);
        EXPECT_EQ(TerminatePOS(), 0u);
    }
}

TEST_F(ExportsTest, FreeingFunctions_NeedNoSessionAndReturn0) {
    EXPECT_EQ(posDeleteDLLHeapData(nullptr), 0u);
    EXPECT_EQ(posFreeDllHeapData(nullptr), 0u);
    EXPECT_EQ(posDeleteDLLHeapData(new uint8_t[3]), 0u);
    EXPECT_EQ(posFreeDllHeapData(std::malloc(3)), 0u);
}

TEST_F(ExportsTest, Failures_Are80000008) {
    ASSERT_EQ(InitializePOS(), 0u);
    EXPECT_EQ(posUnregisterApplication(1), 0x80000008u);
    EXPECT_EQ(posDeleteObject(1, nullptr), 0x80000008u);
    EXPECT_EQ(posInstantiateObject(1, nullptr, nullptr), 0x80000008u);
    EXPECT_EQ(posInstantiateObjectOnExecuter(1, nullptr, nullptr, nullptr), 0x80000008u);
    EXPECT_EQ(posCallMethod(1, nullptr, nullptr, nullptr, 0, nullptr, nullptr), 0x80000008u);
    EXPECT_EQ(posCallMethodOnExecuter(1, nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr),
              0x80000008u);
    EXPECT_EQ(posExecuteCMD(1, nullptr, 0, nullptr, 0, nullptr, nullptr), 0x80000008u);
}

TEST_F(ExportsTest, GetInfo_InterfaceVersion_NeedsNoServer) {
    ASSERT_EQ(InitializePOS(), 0u);
    uint8_t* info = nullptr;
    int32_t length = 0;
    ASSERT_EQ(posGetInfo(0xFFFFFFFF, "\x60\x01", 2, &info, &length), 0u);
    ASSERT_EQ(length, 4);
    EXPECT_EQ(info[0], 7);
    EXPECT_EQ(info[1] + info[2] + info[3], 0);
    EXPECT_EQ(posDeleteDLLHeapData(info), 0u);
}

TEST_F(ExportsTest, Register_WithoutAnInstalledServer_Is80000008AndLeavesTheIdentifierUnchanged) {
    ASSERT_EQ(InitializePOS(), 0u);
    uint32_t applicationId = 99;
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, 0, &applicationId), 0x80000008u);
    EXPECT_EQ(applicationId, 99u);
}

}  // namespace
}  // namespace dovrel
