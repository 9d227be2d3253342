#include "client/POSAccessUserInteraction.h"

#include <cstring>
#include <functional>
#include <new>

#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/client/SessionTest.h"
#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

using test::Identifier;
using test::kOK;
using test::kRetryCancel;
using test::reportBody;
using test::ShownAlert;

/// Calls each operation with arguments that are all in order; the outputs hold rubbish before.
class POSAccessUserInteractionTest : public test::SessionTest {
  protected:
    uint32_t registerHost(uint32_t* applicationId) {
        return posRegisterApplicationWithClasses("Host", &identifier_, 1, nullptr, 0, applicationId);
    }
    uint32_t instantiate(uint32_t applicationId) {
        object_ = this;
        return posInstantiateObject(applicationId, &identifier_, &object_);
    }
    uint32_t call(uint32_t applicationId) {
        fillOutputs();
        return posCallMethod(applicationId, &identifier_, "add", nullptr, 0, &result_, &resultLength_);
    }
    uint32_t deleteObject(uint32_t applicationId) { return posDeleteObject(applicationId, &identifier_); }
    uint32_t execute(uint32_t applicationId) {
        fillOutputs();
        return posExecuteCMD(applicationId, &identifier_, 16, &identifier_, 16, &result_, &resultLength_);
    }
    uint32_t getInfo(uint32_t applicationId) {
        fillOutputs();
        return posGetInfo(applicationId, "about", 5, &result_, &infoLength_);
    }

    void fillOutputs() {
        result_ = reinterpret_cast<uint8_t*>(this);
        resultLength_ = 77;
        infoLength_ = 77;
    }

    /// Whether the operation released the lock: another one goes through.
    bool isUnlocked() {
        uint8_t* info = nullptr;
        int32_t length = 0;
        const bool answered = posGetInfo(0, "\x60\x01", 2, &info, &length) == POS_OK;
        posDeleteDLLHeapData(info);
        return answered;
    }

    std::vector<ShownAlert> oneReport(const std::string& application, const std::string& message,
                                      const std::string& explanation) const {
        return {{kErrorTitle, reportBody(application, message, explanation), kOK}};
    }

    Identifier name_{"Counter"};
    void* identifier_ = name_.bytes();
    void* null_ = nullptr;
    void* object_ = nullptr;
    uint8_t* result_ = nullptr;
    uint32_t resultLength_ = 0;
    int32_t infoLength_ = 0;
};

TEST_F(POSAccessUserInteractionTest, VirtualOperations_AreTheDestructorsOnly) {
    EXPECT_EQ(test::VirtualSlots<POSAccessUserInteraction>::count(), 2u);
}

// Registering and unregistering.

TEST_F(POSAccessUserInteractionTest, Register_HandsOutTheIdentifierAndKeepsTheName) {
    forwarder_->answer(10, test::registration(42));
    EXPECT_EQ(registered("Editor"), 42u);
    EXPECT_STREQ(currentSession()->client().applicationName(42), "Editor");
    EXPECT_EQ(currentSession()->dialogHandler().currentApplicationName(), "Editor");
    EXPECT_EQ(currentSession()->currentApplication(), 0xFFFFFFFFu);
}

TEST_F(POSAccessUserInteractionTest, Register_NullName_IsTheEmptyName) {
    EXPECT_EQ(forwarder_->requests(10).size(), 0u);
    const uint32_t applicationId = registered(nullptr);
    EXPECT_STREQ(currentSession()->client().applicationName(applicationId), "");
    EXPECT_EQ(forwarder_->lastRequest(10)->readString(100), std::string(1, '\0'));
}

TEST_F(POSAccessUserInteractionTest, Register_NullOptionsTooShortForACode_CountAsNone) {
    for (uint32_t length : {0u, 1u}) {
        uint32_t applicationId = 0;
        EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, length, &applicationId),
                  POS_OK);
        EXPECT_EQ(forwarder_->lastRequest(10)->readString(114), "");
    }
}

TEST_F(POSAccessUserInteractionTest, Register_NullOptionsWithALength_FailBeforeAnythingIsSent) {
    for (uint32_t length : {2u, 3u, 8u}) {
        uint32_t applicationId = 99;
        dialog_->shown.clear();
        EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, length, &applicationId),
                  POS_FAILURE);
        EXPECT_EQ(dialog_->shown, oneReport("Host", kNullPointer, "Stopped.")) << length;
        EXPECT_EQ(applicationId, 99u);
    }
    EXPECT_EQ(forwarder_->countOf("10") + forwarder_->countOf("17") + forwarder_->countOf("connect 10"), 0u);
}

TEST_F(POSAccessUserInteractionTest, Register_OptionsLengthZeroOneOrOdd_IgnoresThemButSendsThem) {
    uint16_t options[] = {1121, 1121};
    for (uint32_t length : {0u, 1u, 3u}) {
        uint32_t applicationId = 0;
        ASSERT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, length, &applicationId),
                  POS_OK);
        EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(applicationId)) << length;
        EXPECT_EQ(forwarder_->lastRequest(10)->readString(114).size(), length);
    }
}

TEST_F(POSAccessUserInteractionTest, Register_NullPlaceForTheIdentifier_FailsBeforeAnythingIsSent) {
    EXPECT_EQ(registerHost(nullptr), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Host", kNullPointer, "Stopped."));
    EXPECT_EQ(forwarder_->countOf("10") + forwarder_->countOf("17") + forwarder_->countOf("connect 10"), 0u);
}

TEST_F(POSAccessUserInteractionTest, Register_ListWithAGap_FailsBeforeAnythingIsSent) {
    uint32_t applicationId = 99;
    void* list[] = {identifier_, nullptr};
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", list, 2, nullptr, 0, &applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Host", kNullPointer, "Stopped."));
    EXPECT_EQ(applicationId, 99u);
    EXPECT_EQ(forwarder_->countOf("connect 10"), 0u);
}

TEST_F(POSAccessUserInteractionTest, Register_WrongInterfaceVersion_FailsWithItsText) {
    uint32_t applicationId = 99;
    forwarder_->answer(17, test::interfaceVersion(8));
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Host", kWrongInterface, "Stopped."));
    EXPECT_EQ(applicationId, 99u);
}

TEST_F(POSAccessUserInteractionTest,
       Register_FailureWithNobodyRegistered_DisconnectsBeforeTheAlertAndAfterwards) {
    uint32_t applicationId = 0;
    std::vector<std::string> callsWhenShown;
    forwarder_->answer(10, test::error(24, "no driver"));
    dialog_->onShow = [&] { callsWhenShown = forwarder_->calls(); };
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(callsWhenShown, (std::vector<std::string>{"connect 10", "17", "10", "check"}));
    EXPECT_EQ(forwarder_->calls(), (std::vector<std::string>{"connect 10", "17", "10", "check", "check"}));
}

TEST_F(POSAccessUserInteractionTest, Register_FailureWithSomebodyRegistered_KeepsTheConnection) {
    registered("Viewer");
    forwarder_->answer(10, test::error(24, "no driver"));
    uint32_t applicationId = 0;
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(forwarder_->countOf("check"), 0u);
}

TEST_F(POSAccessUserInteractionTest, Register_Retry_RepeatsTheRequestInFull) {
    forwarder_->answerNext(10, {test::error(32, "refused"), test::error(32, "refused")});
    dialog_->answers = {11, 11};
    uint32_t applicationId = 0;
    EXPECT_EQ(registerHost(&applicationId), POS_OK);
    EXPECT_EQ(forwarder_->calls(), (std::vector<std::string>{"connect 10", "17", "10", "check", "connect 10",
                                                             "17", "10", "check", "connect 10", "17", "10"}));
    const auto requests = forwarder_->requests(10);
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[1]->bytes().compare(requests[0]->bytes()), 0);
    EXPECT_EQ(requests[2]->bytes().compare(requests[0]->bytes()), 0);
    EXPECT_TRUE(currentSession()->client().isRegistered(applicationId));
}

TEST_F(POSAccessUserInteractionTest, Register_Retry_DoesNotReadTheOptionsAgain) {
    forwarder_->answerNext(10, {test::error(32, "refused")});
    dialog_->answers = {11};
    uint16_t options[] = {1121};
    dialog_->onShow = [&] { options[0] = 1104; };
    uint32_t applicationId = 0;
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, 2, &applicationId), POS_OK);
    EXPECT_TRUE(currentSession()->dialogHandler().isSilenced(applicationId));
    EXPECT_TRUE(currentSession()->dialogHandler().flags().withoutOption1104);
}

TEST_F(POSAccessUserInteractionTest, Register_RetryDeclined_Fails) {
    forwarder_->answer(10, test::error(32, "refused"));
    dialog_->answers = {13, 13};
    uint32_t applicationId = 99;
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{
                                  {kErrorTitle, reportBody("Host", "refused", "Register."), kRetryCancel},
                                  {kErrorTitle, kAttention, kRetryCancel}}));
    EXPECT_EQ(applicationId, 99u);
}

TEST_F(POSAccessUserInteractionTest, Register_Option1120_RefusalIsNotShown) {
    forwarder_->answer(10, test::error(32, "refused"));
    uint16_t options[] = {1120};
    uint32_t applicationId = 99;
    EXPECT_EQ(posRegisterApplicationWithClasses("Host", nullptr, 0, options, 2, &applicationId), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(forwarder_->countOf("10"), 1u);
    EXPECT_EQ(forwarder_->countOf("check"), 1u);
}

TEST_F(POSAccessUserInteractionTest, Register_AnswerWithCode36_FailsWithoutAWordAndDisconnects) {
    forwarder_->answer(10, test::error(36, "whatever"));
    uint32_t applicationId = 99;
    EXPECT_EQ(registerHost(&applicationId), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(applicationId, 99u);
    EXPECT_EQ(currentSession()->client().applicationCount(), 0u);
    EXPECT_EQ(forwarder_->countOf("check"), 1u);
}

TEST_F(POSAccessUserInteractionTest, Unregister_LastApplication_Disconnects) {
    const uint32_t first = registered();
    const uint32_t second = registered();
    EXPECT_EQ(posUnregisterApplication(first), POS_OK);
    EXPECT_EQ(forwarder_->countOf("check"), 0u);
    EXPECT_EQ(posUnregisterApplication(second), POS_OK);
    EXPECT_EQ(forwarder_->countOf("check"), 1u);
}

TEST_F(POSAccessUserInteractionTest, Unregister_NeverRegistered_FailsWithoutADialog) {
    EXPECT_EQ(posUnregisterApplication(5), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(forwarder_->calls(), std::vector<std::string>{"check"});
}

TEST_F(POSAccessUserInteractionTest, Unregister_UnknownWhileOthersAreRegistered_KeepsTheConnection) {
    const uint32_t applicationId = registered();
    forwarder_->forgetCalls();
    EXPECT_EQ(posUnregisterApplication(applicationId + 1), POS_FAILURE);
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, Unregister_AnsweredWithAnError_IsReportedAndTheRecordStays) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answerNext(11, {test::error(34, "who?")});
    EXPECT_EQ(posUnregisterApplication(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "who?", "Stopped."));
    EXPECT_TRUE(currentSession()->client().isRegistered(applicationId));
    EXPECT_EQ(forwarder_->countOf("check"), 0u);
}

TEST_F(POSAccessUserInteractionTest, Unregister_SilencedApplication_LeavesTheList) {
    const uint32_t applicationId = registered("Editor", {1121});
    ASSERT_TRUE(currentSession()->dialogHandler().isSilenced(applicationId));
    EXPECT_EQ(posUnregisterApplication(applicationId), POS_OK);
    EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(applicationId));
}

TEST_F(POSAccessUserInteractionTest, Silenced_RegisteredAnewWithoutTheOption_LeavesTheList) {
    forwarder_->answer(10, test::registration(8));
    registered("Editor", {1121});
    registered("Editor");
    EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(8));
}

// Unregistered applications.

TEST_F(POSAccessUserInteractionTest, UnregisteredApplication_FailsAtOnceWithoutADialogAndClearsTheOutputs) {
    EXPECT_EQ(instantiate(5), POS_FAILURE);
    EXPECT_EQ(object_, nullptr);
    EXPECT_EQ(call(5), POS_FAILURE);
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
    EXPECT_EQ(deleteObject(5), POS_FAILURE);
    EXPECT_EQ(execute(5), POS_FAILURE);
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, ExecuteCMD_UnregisteredApplicationAndNullPointers_ShowsNothing) {
    EXPECT_EQ(posExecuteCMD(5, nullptr, 0, nullptr, 0, nullptr, nullptr), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(POSAccessUserInteractionTest, GetInfo_NeedsNoRegistrationAndNamesTheUnknownApplication) {
    EXPECT_EQ(getInfo(5), POS_OK);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(result_), static_cast<size_t>(infoLength_)), "information");
    posDeleteDLLHeapData(result_);

    forwarder_->answer(16, test::error(0, "no such thing"));
    EXPECT_EQ(getInfo(5), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Unknown Application", "no such thing", "Stopped."));
}

TEST_F(POSAccessUserInteractionTest, GetInfo_InterfaceVersionBeforeAnyRegistration_IsSevenWithoutTheServer) {
    uint8_t* info = nullptr;
    int32_t length = 0;
    ASSERT_EQ(posGetInfo(0, "\x60\x01", 2, &info, &length), POS_OK);
    ASSERT_EQ(length, 4);
    EXPECT_EQ(std::memcmp(info, "\x07\0\0\0", 4), 0);
    EXPECT_EQ(posDeleteDLLHeapData(info), POS_OK);
    EXPECT_TRUE(forwarder_->calls().empty());
}

// Null pointers.

TEST_F(POSAccessUserInteractionTest, CallMethod_NullMethodName_FailsWithTheNullPointerText) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->forgetCalls();
    fillOutputs();
    EXPECT_EQ(posCallMethod(applicationId, &identifier_, nullptr, nullptr, 0, &result_, &resultLength_),
              POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", kNullPointer, "Stopped."));
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, EveryRequiredPointer_WhenNull_FailsWithTheNullPointerText) {
    const uint32_t app = registered("Editor");
    forwarder_->forgetCalls();
    uint8_t byte = 0;
    uint32_t applicationId = 0;
    const std::function<uint32_t()> calls[] = {
        [&] { return posRegisterApplicationWithClasses("Editor", &identifier_, 1, nullptr, 0, nullptr); },
        [&] { return posRegisterApplicationWithClasses("Editor", nullptr, 1, nullptr, 0, &applicationId); },
        [&] { return posInstantiateObject(app, nullptr, &object_); },
        [&] { return posInstantiateObject(app, &null_, &object_); },
        [&] { return posInstantiateObject(app, &identifier_, nullptr); },
        [&] { return posInstantiateObjectOnExecuter(app, &identifier_, nullptr, &object_); },
        [&] { return posCallMethod(app, nullptr, "m", &byte, 1, &result_, &resultLength_); },
        [&] { return posCallMethod(app, &null_, "m", &byte, 1, &result_, &resultLength_); },
        [&] { return posCallMethod(app, &identifier_, "m", nullptr, 1, &result_, &resultLength_); },
        [&] { return posCallMethod(app, &identifier_, "m", &byte, 1, nullptr, &resultLength_); },
        [&] { return posCallMethod(app, &identifier_, "m", &byte, 1, &result_, nullptr); },
        [&] { return posDeleteObject(app, nullptr); },
        [&] { return posDeleteObject(app, &null_); },
        [&] { return posGetInfo(app, nullptr, 0, &result_, &infoLength_); },
        [&] { return posGetInfo(app, &byte, 1, nullptr, &infoLength_); },
        [&] { return posGetInfo(app, &byte, 1, &result_, nullptr); },
        [&] { return posExecuteCMD(app, nullptr, 0, &identifier_, 1, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &null_, 1, &identifier_, 1, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, nullptr, 0, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, &null_, 1, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, &identifier_, 1, nullptr, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, &identifier_, 1, &result_, nullptr); },
    };
    size_t index = 0;
    for (const auto& failing : calls) {
        dialog_->shown.clear();
        EXPECT_EQ(failing(), POS_FAILURE) << index;
        EXPECT_EQ(dialog_->shown, oneReport("Editor", kNullPointer, "Stopped.")) << index;
        ++index;
    }
    EXPECT_TRUE(forwarder_->calls().empty());
}

// Failures.

TEST_F(POSAccessUserInteractionTest,
       Instantiate_ClassNotRegistered_FailsWithItsTextWhenTheServerAsksForTheCheck) {
    forwarder_->answer(10, test::registration(3, 1));
    registered("Editor", {}, {"Clock"});
    EXPECT_EQ(instantiate(3), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", kClassMissing, "Stopped."));
    EXPECT_EQ(object_, nullptr);
    EXPECT_EQ(forwarder_->countOf("12"), 0u);
}

TEST_F(POSAccessUserInteractionTest, ErrorAnswer24_ShowsTheDriverTextAndFailsAfterOK) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(12, test::error(24, "no driver"));
    dialog_->answers = {12};
    EXPECT_EQ(instantiate(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "no driver", "Driver."));
    EXPECT_EQ(object_, nullptr);
}

TEST_F(POSAccessUserInteractionTest, ErrorAnswer32_OutsideRegistration_CanBeRetried) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answerNext(14, {test::error(32, "register first")});
    dialog_->answers = {11};
    EXPECT_EQ(call(applicationId), POS_OK);
    posDeleteDLLHeapData(result_);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{
                  {kErrorTitle, reportBody("Editor", "register first", "Register."), kRetryCancel}}));
    EXPECT_EQ(forwarder_->countOf("check"), 0u);
}

TEST_F(POSAccessUserInteractionTest, ErrorAnswersWithCode36OrUnlisted_FailEveryOperationWithoutAWord) {
    const uint32_t applicationId = registered("Editor");
    for (uint32_t code : {36u, 29u, 44u, 147u}) {
        for (uint32_t command = 11; command <= 16; ++command)
            forwarder_->answer(command, test::error(code, "whatever"));
        EXPECT_EQ(instantiate(applicationId), POS_FAILURE);
        EXPECT_EQ(object_, nullptr);
        EXPECT_EQ(call(applicationId), POS_FAILURE);
        EXPECT_EQ(result_, nullptr);
        EXPECT_EQ(resultLength_, 0u);
        EXPECT_EQ(deleteObject(applicationId), POS_FAILURE);
        EXPECT_EQ(execute(applicationId), POS_FAILURE);
        EXPECT_EQ(result_, nullptr);
        EXPECT_EQ(getInfo(applicationId), POS_FAILURE);
        EXPECT_EQ(result_, nullptr);
        EXPECT_EQ(infoLength_, 0);
        EXPECT_EQ(posUnregisterApplication(applicationId), POS_FAILURE);
        EXPECT_TRUE(currentSession()->client().isRegistered(applicationId));
    }
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(POSAccessUserInteractionTest, AnswerThatCannotBeRead_IsAnUnrecoverableFailure) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(14, [](POSTransferObj&) { return std::make_unique<POSTransferObj>(1, 11, 14); });
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].buttons, kOK);
    const std::string& body = dialog_->shown[0].body;
    EXPECT_EQ(body.substr(body.size() - 8), "Stopped.");
}

TEST_F(POSAccessUserInteractionTest, Outputs_MayBeTheInputs) {
    const uint32_t applicationId = registered();
    void* handle = identifier_;
    EXPECT_EQ(posInstantiateObject(applicationId, &handle, &handle), POS_OK);
    EXPECT_EQ(forwarder_->lastRequest(12)->readString(106), std::string("Counter\0\0\0\0\0\0\0\0\0", 16));
    EXPECT_NE(handle, identifier_);
    posFreeDllHeapData(handle);
}

// Messages of the server.

TEST_F(POSAccessUserInteractionTest, ServerMessage_IsShownAfterInstantiationAndCall) {
    const uint32_t applicationId = registered();
    forwarder_->answer(12, test::object("object", 1, "Made."));
    forwarder_->answer(14, test::result("", 0x80000000, "Called."));
    EXPECT_EQ(instantiate(applicationId), POS_OK);
    posFreeDllHeapData(object_);
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{{kMessageTitle, "Made.", kOK}, {kMessageTitle, "Called.", kOK}}));
}

TEST_F(POSAccessUserInteractionTest, ServerMessage_FlagWordZeroOrEmptyText_IsNoMessage) {
    const uint32_t applicationId = registered();
    forwarder_->answerNext(14, {test::result("", 0, "Text"), test::result("", 1, "")});
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(POSAccessUserInteractionTest, ServerMessage_SilencedApplication_IsNotShownButItsFailuresAre) {
    const uint32_t applicationId = registered("Editor", {1121});
    forwarder_->answerNext(14, {test::result("", 1, "Called."), test::error(28, "broken")});
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "broken", "Stopped."));
}

TEST_F(POSAccessUserInteractionTest, ServerMessage_FailedOperation_ShowsNone) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(14, [](POSTransferObj& request) {
        auto answer = test::error(28, "broken")(request);
        answer->writeString(120, std::string("\x01\0\0\0Called.", 11));
        return answer;
    });
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "broken", "Stopped."));
}

// Executers.

TEST_F(POSAccessUserInteractionTest, InstantiateOnExecuter_WithAnyExecuter_BehavesAsWithout) {
    const uint32_t applicationId = registered();
    Identifier name("executer");
    void* executer = name.bytes();
    EXPECT_EQ(instantiate(applicationId), POS_OK);
    posFreeDllHeapData(object_);
    for (void** handle : {&executer, &null_, static_cast<void**>(nullptr)}) {
        void* object = nullptr;
        EXPECT_EQ(posInstantiateObjectOnExecuter(applicationId, handle, &identifier_, &object), POS_OK);
        EXPECT_EQ(std::memcmp(object, "object\0\0\0\0\0\0\0\0\0\0", 16), 0);
        posFreeDllHeapData(object);
    }
    const auto requests = forwarder_->requests(12);
    ASSERT_EQ(requests.size(), 4u);
    for (const auto& request : requests)
        EXPECT_EQ(request->bytes().compare(requests[0]->bytes()), 0);
}

TEST_F(POSAccessUserInteractionTest, CallMethodOnExecuter_WithNull_IsCallMethod) {
    const uint32_t applicationId = registered();
    EXPECT_EQ(call(applicationId), POS_OK);
    posDeleteDLLHeapData(result_);
    EXPECT_EQ(posCallMethodOnExecuter(applicationId, nullptr, &identifier_, "add", nullptr, 0, &result_,
                                      &resultLength_),
              POS_OK);
    posDeleteDLLHeapData(result_);
    const auto requests = forwarder_->requests(14);
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0]->bytes().compare(requests[1]->bytes()), 0);
}

// What is thrown through the operations.

struct Thrown {
    const char* name;
    std::function<void()> raise;
    const char* message;
};

const Thrown kThrown[] = {
    {"CPPException", [] { throw new CPPException("plain"); }, "plain"},
    {"POSException", [] { throw new POSException("from the server"); }, "from the server"},
    {"DerivedException", [] { throw new PartNotFoundException("part"); }, "part"},
    {"BadAlloc", [] { throw std::bad_alloc(); }, "Nobody knows."},
    {"Integer", [] { throw 5; }, "Nobody knows."},
    {"ExceptionByValue", [] { throw CPPException("by value"); }, "Nobody knows."},
};

class ThrowingTest : public POSAccessUserInteractionTest, public testing::WithParamInterface<Thrown> {};

TEST_P(ThrowingTest, ThroughEveryOperation_IsReportedAndTheLockIsReleased) {
    const uint32_t app = registered("Host");
    forwarder_->onRequest = GetParam().raise;
    uint32_t applicationId = 99;
    const std::function<uint32_t()> operations[] = {
        [&] { return registerHost(&applicationId); },
        [&] { return posUnregisterApplication(app); },
        [&] { return instantiate(app); },
        [&] { return call(app); },
        [&] { return deleteObject(app); },
        [&] { return execute(app); },
        [&] { return getInfo(app); },
    };
    size_t index = 0;
    for (const auto& operation : operations) {
        dialog_->shown.clear();
        EXPECT_EQ(operation(), POS_FAILURE) << index;
        EXPECT_EQ(dialog_->shown, oneReport("Host", GetParam().message, "Stopped.")) << index;
        EXPECT_TRUE(isUnlocked()) << index;
        ++index;
    }
    EXPECT_EQ(applicationId, 99u);
    EXPECT_EQ(object_, nullptr);
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(infoLength_, 0);
    EXPECT_TRUE(currentSession()->client().isRegistered(app));
    forwarder_->onRequest = nullptr;
}

INSTANTIATE_TEST_SUITE_P(EveryKind, ThrowingTest, testing::ValuesIn(kThrown),
                         [](const auto& thrown) { return thrown.param.name; });

}  // namespace
}  // namespace dovrel
