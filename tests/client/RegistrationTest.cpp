// Registering and unregistering through the exported functions.
#include <cstring>

#include "tests/client/SessionOperationsTest.h"
#include "tests/client/WatchedMutex.h"

namespace dovrel {
namespace {

using test::kRetryCancel;
using test::reportBody;
using test::ShownAlert;

// Long enough that std::string allocates memory for it.
constexpr char kHostName[] = "A host that keeps its name in a buffer of its own";
constexpr char kOtherName[] = "What the buffer is used for next";

class RegistrationTest : public test::SessionOperationsTest {};

TEST_F(RegistrationTest, Register_ReturnsTheIdentifierAndKeepsTheName) {
    forwarder_->answer(posCommand::kRegisterApplication, test::registration(42));
    EXPECT_EQ(registered("Editor"), 42u);
    EXPECT_STREQ(currentSession()->client().applicationName(42), "Editor");
    EXPECT_EQ(currentSession()->dialogHandler().currentApplicationName(), "Editor");
    EXPECT_EQ(currentSession()->currentApplication(), 0xFFFFFFFFu);
}

TEST_F(RegistrationTest, Register_NullName_IsTheEmptyName) {
    EXPECT_EQ(forwarder_->requests(posCommand::kRegisterApplication).size(), 0u);
    const uint32_t applicationId = registered(nullptr);
    EXPECT_STREQ(currentSession()->client().applicationName(applicationId), "");
    EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(100),
              std::string(1, '\0'));
}

TEST_F(RegistrationTest, Register_NullOptionsOfOddLengthOrNone_CountAsNone) {
    for (uint32_t length : {0u, 1u, 3u, 7u, 0xFFFFFFFFu}) {
        uint32_t applicationId = 0;
        EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, length, &applicationId),
                  POS_OK);
        EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(114), "");
    }
}

TEST_F(RegistrationTest, Register_NullOptionsOfEvenLength_FailBeforeAnythingIsSent) {
    for (uint32_t length : {2u, 4u, 8u, 0xFFFFFFFEu}) {
        uint32_t applicationId = 99;
        dialog_->shown.clear();
        EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, length, &applicationId),
                  POS_FAILURE);
        EXPECT_EQ(dialog_->shown, oneReport("Host", kNullPointer, "Stopped.")) << length;
        EXPECT_EQ(applicationId, 99u);
    }
    EXPECT_EQ(forwarder_->countOccurrences("register application") +
                  forwarder_->countOccurrences("query interface version") +
                  forwarder_->countOccurrences("connect 10"),
              0u);
}

TEST_F(RegistrationTest, Register_OptionsLengthZeroOneOrOdd_IgnoresThemButSendsThem) {
    uint16_t options[] = {1121, 1121};
    for (uint32_t length : {0u, 1u, 3u}) {
        uint32_t applicationId = 0;
        ASSERT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, length, &applicationId),
                  POS_OK);
        EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(applicationId)) << length;
        EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(114).size(), length);
    }
}

TEST_F(RegistrationTest, Register_NullPlaceForTheIdentifier_FailsBeforeAnythingIsSent) {
    EXPECT_EQ(registerHost(nullptr), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Host", kNullPointer, "Stopped."));
    EXPECT_EQ(forwarder_->countOccurrences("register application") +
                  forwarder_->countOccurrences("query interface version") +
                  forwarder_->countOccurrences("connect 10"),
              0u);
}

TEST_F(RegistrationTest, Register_ListWithAGap_FailsBeforeAnythingIsSent) {
    uint32_t applicationId = 99;
    void* list[] = {identifier_, nullptr};
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", list, 2, nullptr, 0, &applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Host", kNullPointer, "Stopped."));
    EXPECT_EQ(applicationId, 99u);
    EXPECT_EQ(forwarder_->countOccurrences("connect 10"), 0u);
}

TEST_F(RegistrationTest, Register_WrongInterfaceVersion_FailsWithItsText) {
    uint32_t applicationId = 99;
    forwarder_->answer(posCommand::kQueryInterfaceVersion, test::interfaceVersion(8));
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Host", kWrongInterface, "Stopped."));
    EXPECT_EQ(applicationId, 99u);
}

TEST_F(RegistrationTest, Register_FailureWithNobodyRegistered_DisconnectsBeforeTheAlertAndAfterwards) {
    uint32_t applicationId = 0;
    std::vector<std::string> callsWhenShown;
    forwarder_->answer(posCommand::kRegisterApplication, test::error(24, "no driver"));
    dialog_->onShow = [&] { callsWhenShown = forwarder_->calls(); };
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(callsWhenShown, (std::vector<std::string>{"connect 10", "query interface version", "identify",
                                                        "register application", "check"}));
    EXPECT_EQ(forwarder_->calls(),
              (std::vector<std::string>{"connect 10", "query interface version", "identify",
                                        "register application", "check", "check"}));
}

TEST_F(RegistrationTest, Register_FailureWithSomebodyRegistered_KeepsTheConnection) {
    registered("Viewer");
    forwarder_->answer(posCommand::kRegisterApplication, test::error(24, "no driver"));
    uint32_t applicationId = 0;
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(forwarder_->countOccurrences("check"), 0u);
}

TEST_F(RegistrationTest, Register_Retry_RepeatsTheRequestInFull) {
    forwarder_->answerNext(posCommand::kRegisterApplication,
                           {test::error(32, "refused"), test::error(32, "refused")});
    dialog_->answers = {11, 11};
    uint32_t applicationId = 0;
    EXPECT_EQ(registerHost(&applicationId), POS_OK);
    EXPECT_EQ(forwarder_->calls(),
              (std::vector<std::string>{
                  "connect 10", "query interface version", "identify", "register application", "check",
                  "connect 10", "query interface version", "identify", "register application", "check",
                  "connect 10", "query interface version", "identify", "register application"}));
    const auto requests = forwarder_->requests(posCommand::kRegisterApplication);
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[1]->bytes().compare(requests[0]->bytes()), 0);
    EXPECT_EQ(requests[2]->bytes().compare(requests[0]->bytes()), 0);
    EXPECT_TRUE(currentSession()->client().isRegistered(applicationId));
}

TEST_F(RegistrationTest, Register_Retry_DoesNotReadTheOptionsAgain) {
    forwarder_->answerNext(posCommand::kRegisterApplication, {test::error(32, "refused")});
    dialog_->answers = {11};
    uint16_t options[] = {1121};
    dialog_->onShow = [&] { options[0] = 1104; };
    uint32_t applicationId = 0;
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, 2, &applicationId), POS_OK);
    EXPECT_TRUE(currentSession()->dialogHandler().isSilenced(applicationId));
    EXPECT_TRUE(currentSession()->dialogHandler().flags().withoutOption1104);
}

TEST_F(RegistrationTest, Register_ReadsTheOptionsOnlyWhenItHasTheLock) {
    test::LockUse use;
    closeSession();
    parts_.createLock = [&use] { return std::make_unique<test::WatchedMutex>(use); };
    openSession(parts_);
    uint16_t options[] = {1104};
    use.onWait = [&] { options[0] = 1121; };
    uint32_t applicationId = 0;
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, 2, &applicationId), POS_OK);
    EXPECT_TRUE(currentSession()->dialogHandler().isSilenced(applicationId));
    use.onWait = nullptr;
    closeSession();
}

TEST_F(RegistrationTest, Register_NameChangedWhileTheAlertIsOpen_StaysAsItWas) {
    forwarder_->answerNext(posCommand::kRegisterApplication,
                           {test::error(32, "refused"), test::error(32, "refused")});
    dialog_->answers = {11, 11};
    std::string buffer = kHostName;
    dialog_->onShow = [&] { std::strcpy(buffer.data(), kOtherName); };
    uint32_t applicationId = 0;
    EXPECT_EQ(posRegisterApplicationWithClasses(buffer.c_str(), nullptr, 0, nullptr, 0, &applicationId),
              POS_OK);

    const ShownAlert refusal{kErrorTitle, reportBody(kHostName, "refused", "Register."), kRetryCancel};
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusal, refusal}));
    const auto requests = forwarder_->requests(posCommand::kRegisterApplication);
    ASSERT_EQ(requests.size(), 3u);
    for (const auto& request : requests)
        EXPECT_EQ(request->readString(100), std::string(kHostName, sizeof kHostName));
    EXPECT_STREQ(currentSession()->client().applicationName(applicationId), kHostName);
    EXPECT_EQ(currentSession()->dialogHandler().currentApplicationName(), kHostName);
    EXPECT_EQ(root_.read(kErrorLogFile).find(kOtherName), std::string::npos);
}

TEST_F(RegistrationTest, Register_NameChangedWhileTheLockIsWaitedFor_StaysAsItWas) {
    closeSession();
    std::string buffer = kHostName;
    test::LockUse use;
    use.onWait = [&] { std::strcpy(buffer.data(), kOtherName); };
    parts_.createLock = [&] { return std::make_unique<test::WatchedMutex>(use); };
    openSession(parts_);
    forwarder_->answerNext(posCommand::kRegisterApplication, {test::error(24, "no driver")});
    uint32_t applicationId = 0;
    EXPECT_EQ(posRegisterApplicationWithClasses(buffer.c_str(), nullptr, 0, nullptr, 0, &applicationId),
              POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport(kHostName, "no driver", "Driver."));
    EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(100),
              std::string(kHostName, sizeof kHostName));
    closeSession();
}

TEST_F(RegistrationTest, Register_RetryDeclined_Fails) {
    forwarder_->answer(posCommand::kRegisterApplication, test::error(32, "refused"));
    dialog_->answers = {13, 13};
    uint32_t applicationId = 99;
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{
                                  {kErrorTitle, reportBody("Host", "refused", "Register."), kRetryCancel},
                                  {kErrorTitle, kAttention, kRetryCancel}}));
    EXPECT_EQ(applicationId, 99u);
}

TEST_F(RegistrationTest, Register_Option1120_RefusalIsNotShown) {
    forwarder_->answer(posCommand::kRegisterApplication, test::error(32, "refused"));
    uint16_t options[] = {1120};
    uint32_t applicationId = 99;
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, 2, &applicationId), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(forwarder_->countOccurrences("register application"), 1u);
    EXPECT_EQ(forwarder_->countOccurrences("check"), 1u);
}

TEST_F(RegistrationTest, Register_AnswerWithCode36_FailsSilentlyAndDisconnects) {
    forwarder_->answer(posCommand::kRegisterApplication, test::error(36, "whatever"));
    uint32_t applicationId = 99;
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(applicationId, 99u);
    EXPECT_EQ(currentSession()->client().applicationCount(), 0u);
    EXPECT_EQ(forwarder_->countOccurrences("check"), 1u);
}

TEST_F(RegistrationTest, Unregister_LastApplication_Disconnects) {
    const uint32_t first = registered();
    const uint32_t second = registered();
    EXPECT_EQ(posUnregisterApplication(first), POS_OK);
    EXPECT_EQ(forwarder_->countOccurrences("check"), 0u);
    EXPECT_EQ(posUnregisterApplication(second), POS_OK);
    EXPECT_EQ(forwarder_->countOccurrences("check"), 1u);
}

TEST_F(RegistrationTest, Unregister_NeverRegistered_FailsWithoutADialog) {
    EXPECT_EQ(posUnregisterApplication(5), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(forwarder_->calls(), std::vector<std::string>{"check"});
}

TEST_F(RegistrationTest, Unregister_UnknownWhileOthersAreRegistered_KeepsTheConnection) {
    const uint32_t applicationId = registered();
    forwarder_->forgetCalls();
    EXPECT_EQ(posUnregisterApplication(applicationId + 1), POS_FAILURE);
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(RegistrationTest, Unregister_AnsweredWithAnError_IsReportedAndTheRecordStays) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answerNext(posCommand::kUnregisterApplication, {test::error(34, "who?")});
    EXPECT_EQ(posUnregisterApplication(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "who?", "Stopped."));
    EXPECT_TRUE(currentSession()->client().isRegistered(applicationId));
    EXPECT_EQ(forwarder_->countOccurrences("check"), 0u);
}

TEST_F(RegistrationTest, Unregister_SilencedApplication_LeavesTheList) {
    const uint32_t applicationId = registered("Editor", {1121});
    ASSERT_TRUE(currentSession()->dialogHandler().isSilenced(applicationId));
    EXPECT_EQ(posUnregisterApplication(applicationId), POS_OK);
    EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(applicationId));
}

TEST_F(RegistrationTest, Silenced_RegisteredAnewWithoutTheOption_LeavesTheList) {
    forwarder_->answer(posCommand::kRegisterApplication, test::registration(8));
    registered("Editor", {1121});
    registered("Editor");
    EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(8));
}

}  // namespace
}  // namespace dovrel
