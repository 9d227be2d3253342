#include "client/POSAccessUIDialogHandler.h"

#include <functional>
#include <stdexcept>

#include "client/exceptions/POSException.h"
#include "tests/client/SessionTest.h"

namespace dovrel {
namespace {

using test::kOK;
using test::kRetryCancel;
using test::reportBody;
using test::ShownAlert;

class POSAccessUIDialogHandlerTest : public test::SystemRootTest {
  protected:
    POSAccessUIDialogHandlerTest() : handler_(newDialog()) {
        client_.setForwarder(&forwarder_);
        handler_.setClient(&client_);
    }

    std::unique_ptr<MessageDialog> newDialog() {
        auto dialog = std::make_unique<test::ScriptedMessageDialog>();
        dialog_ = dialog.get();
        return dialog;
    }

    void readOptions(std::vector<uint16_t> options) {
        handler_.readOptions(options.data(), static_cast<uint32_t>(options.size() * sizeof(uint16_t)));
    }

    uint32_t registered(const char* name) {
        uint32_t applicationId = 0;
        handler_.prepareRegistration(name);
        EXPECT_TRUE(client_.registerApplication(name, nullptr, 0, nullptr, 0, applicationId));
        handler_.completeRegistration(applicationId);
        return applicationId;
    }

    /// Runs work that fails as long as `failures` lasts, and counts its runs.
    bool runFailing(int failures, const std::function<CPPException*()>& make) {
        return handler_.run(0, [&]() -> bool {
            if (++runs_ <= failures) throw make();
            return true;
        });
    }
    bool registerFailing(int failures, const std::function<CPPException*()>& make) {
        return handler_.runRegistration("Editor", [&]() -> bool {
            if (++runs_ <= failures) throw make();
            return true;
        });
    }

    static CPPException* refusal() { return new POSRegistrationException("refused"); }
    static CPPException* otherFailure() { return new POSMethodExecutionException("broken"); }

    const ShownAlert refusalAlert_{kErrorTitle, reportBody("Editor", "refused", "Register."), kRetryCancel};
    const ShownAlert attentionAlert_{kErrorTitle, kAttention, kRetryCancel};

    test::ScriptedForwarder forwarder_;
    test::ScriptedMessageDialog* dialog_ = nullptr;
    POSAccessClient client_;
    POSAccessUIDialogHandler handler_;
    int runs_ = 0;
};

// Options.

TEST_F(POSAccessUIDialogHandlerTest, Options_None_SetAllFlags) {
    readOptions({});
    EXPECT_TRUE(handler_.flags().withoutOption1104);
    EXPECT_TRUE(handler_.flags().showsRegistrationFailures);
    EXPECT_TRUE(handler_.flags().showsServerMessages);
}

TEST_F(POSAccessUIDialogHandlerTest, Options_EachCodeClearsItsFlagOnly) {
    readOptions({1104});
    EXPECT_FALSE(handler_.flags().withoutOption1104);
    EXPECT_TRUE(handler_.flags().showsRegistrationFailures);
    EXPECT_TRUE(handler_.flags().showsServerMessages);
    readOptions({1120});
    EXPECT_TRUE(handler_.flags().withoutOption1104);
    EXPECT_FALSE(handler_.flags().showsRegistrationFailures);
    EXPECT_TRUE(handler_.flags().showsServerMessages);
    readOptions({1121});
    EXPECT_TRUE(handler_.flags().withoutOption1104);
    EXPECT_TRUE(handler_.flags().showsRegistrationFailures);
    EXPECT_FALSE(handler_.flags().showsServerMessages);
}

TEST_F(POSAccessUIDialogHandlerTest, Options_OtherCodesAreIgnoredAndOrderDoesNotMatter) {
    readOptions({0, 1105, 1121, 65535, 1104});
    EXPECT_FALSE(handler_.flags().withoutOption1104);
    EXPECT_TRUE(handler_.flags().showsRegistrationFailures);
    EXPECT_FALSE(handler_.flags().showsServerMessages);
}

TEST_F(POSAccessUIDialogHandlerTest, Options_LengthZeroOneOrOdd_AreIgnoredButFlagsAreSetAllTheSame) {
    const uint16_t codes[] = {1104, 1120, 1121};
    for (uint32_t length : {0u, 1u, 3u, 5u}) {
        readOptions({1104, 1120, 1121});
        ASSERT_FALSE(handler_.flags().withoutOption1104);
        handler_.readOptions(codes, length);
        EXPECT_TRUE(handler_.flags().withoutOption1104) << length;
        EXPECT_TRUE(handler_.flags().showsRegistrationFailures) << length;
        EXPECT_TRUE(handler_.flags().showsServerMessages) << length;
    }
}

TEST_F(POSAccessUIDialogHandlerTest, Options_NullCountsAsNone) {
    handler_.readOptions(nullptr, 4);
    EXPECT_TRUE(handler_.flags().withoutOption1104);
}

TEST_F(POSAccessUIDialogHandlerTest, Options_MayLieAtAnyAddress) {
    alignas(uint16_t) char bytes[] = "?\x50\x04";  // 1104, least significant byte first, behind one byte
    handler_.readOptions(reinterpret_cast<const uint16_t*>(bytes + 1), 2);
    EXPECT_FALSE(handler_.flags().withoutOption1104);
}

// The frame.

TEST_F(POSAccessUIDialogHandlerTest, Run_WorkThatReturns_IsRunOnceWithoutAWord) {
    EXPECT_TRUE(runFailing(0, otherFailure));
    EXPECT_FALSE(handler_.run(0, [] { return false; }));
    EXPECT_EQ(runs_, 1);
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(POSAccessUIDialogHandlerTest, Run_Failure_IsShownWithOKAndTheOperationFails) {
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{
                  {kErrorTitle, reportBody("Unknown Application", "broken", "Stopped."), kOK}}));
}

TEST_F(POSAccessUIDialogHandlerTest, Run_FailureOfRegisteredApplication_NamesIt) {
    const uint32_t applicationId = registered("Editor");
    EXPECT_FALSE(handler_.run(applicationId, []() -> bool { throw otherFailure(); }));
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].body, reportBody("Editor", "broken", "Stopped."));
}

TEST_F(POSAccessUIDialogHandlerTest, Run_ThrownObjectOutsideTheFamily_IsReportedAsUnknown) {
    EXPECT_FALSE(handler_.run(0, []() -> bool { throw std::runtime_error("not for the user"); }));
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].body, reportBody("Unknown Application", kUnknown, "Stopped."));
}

TEST_F(POSAccessUIDialogHandlerTest, Run_AnswerRetryToAnAlertWithoutRetry_StillFails) {
    dialog_->answers = {11};
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
}

TEST_F(POSAccessUIDialogHandlerTest, Run_AlertThatThrows_EndsTheOperation) {
    dialog_->onShow = [] { throw 5; };
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
}

TEST_F(POSAccessUIDialogHandlerTest, Run_EachReportedFailure_IsAnEntryOfTheErrorLog) {
    EXPECT_FALSE(runFailing(1, otherFailure));
    const std::string log = root_.read(kErrorLogFile);
    EXPECT_NE(log.find("//APPLICATION\nSTR:Unknown Application\n//TYPE\nINT:28\n//MESSAGE\nSTR:broken\n"),
              std::string::npos)
        << log;
}

// Failures of type 32.

TEST_F(POSAccessUIDialogHandlerTest, Refusal_Retry_RunsTheWorkAgain) {
    dialog_->answers = {11, 11};
    EXPECT_TRUE(registerFailing(2, refusal));
    EXPECT_EQ(runs_, 3);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusalAlert_, refusalAlert_}));
}

TEST_F(POSAccessUIDialogHandlerTest, Refusal_Cancel_AsksASecondTimeAndTakesThatAnswer) {
    dialog_->answers = {13, 13};
    EXPECT_FALSE(registerFailing(1, refusal));
    EXPECT_EQ(runs_, 1);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusalAlert_, attentionAlert_}));
}

TEST_F(POSAccessUIDialogHandlerTest, Refusal_CancelThenRetry_RunsTheWorkAgain) {
    dialog_->answers = {13, 11};
    EXPECT_TRUE(registerFailing(1, refusal));
    EXPECT_EQ(runs_, 2);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusalAlert_, attentionAlert_}));
}

TEST_F(POSAccessUIDialogHandlerTest, Refusal_AlertThatCannotBeShown_FailsWithoutASecondOne) {
    dialog_->answers = {0};
    EXPECT_FALSE(registerFailing(1, refusal));
    EXPECT_EQ(dialog_->shown, std::vector<ShownAlert>{refusalAlert_});
}

TEST_F(POSAccessUIDialogHandlerTest, Refusal_AnswerTen_CountsAsRetryAtRegistration) {
    dialog_->answers = {10, 13, 10};
    EXPECT_TRUE(registerFailing(2, refusal));
    EXPECT_EQ(runs_, 3);
}

TEST_F(POSAccessUIDialogHandlerTest, Refusal_OutsideRegistration_OffersRetryAndCancelButTenIsNoRetry) {
    dialog_->answers = {11, 13, 11, 10};
    EXPECT_FALSE(runFailing(3, refusal));
    EXPECT_EQ(runs_, 3);
    const ShownAlert unknown{kErrorTitle, reportBody("Unknown Application", "refused", "Register."),
                             kRetryCancel};
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{unknown, unknown, attentionAlert_, unknown}));
}

TEST_F(POSAccessUIDialogHandlerTest, Registration_AnswerTenToAnotherFailure_IsNoRetry) {
    dialog_->answers = {10};
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
}

TEST_F(POSAccessUIDialogHandlerTest, Option1120_RefusalAtRegistration_FailsAtOnceWithoutAnAlert) {
    readOptions({1120});
    EXPECT_FALSE(registerFailing(1, refusal));
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(runs_, 1);
}

TEST_F(POSAccessUIDialogHandlerTest, Option1120_OtherFailureAtRegistration_IsShown) {
    readOptions({1120});
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{{kErrorTitle, reportBody("Editor", "broken", "Stopped."), kOK}}));
}

TEST_F(POSAccessUIDialogHandlerTest, Option1120_RefusalOutsideRegistration_IsShown) {
    readOptions({1120});
    EXPECT_FALSE(runFailing(1, refusal));
    EXPECT_FALSE(dialog_->shown.empty());
}

TEST_F(POSAccessUIDialogHandlerTest, Registration_NobodyRegistered_DisconnectsBeforeTheFailureIsShown) {
    std::vector<std::string> callsWhenShown;
    dialog_->onShow = [&] { callsWhenShown = forwarder_.calls(); };
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_EQ(callsWhenShown, std::vector<std::string>{"check"});
}

TEST_F(POSAccessUIDialogHandlerTest, Registration_SomebodyRegistered_KeepsTheConnection) {
    registered("Viewer");
    forwarder_.forgetCalls();
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(POSAccessUIDialogHandlerTest, Registration_Failure_ShowsTheNameThatWasGiven) {
    registered("Viewer");
    EXPECT_FALSE(registerFailing(1, otherFailure));
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].body, reportBody("Editor", "broken", "Stopped."));
}

TEST_F(POSAccessUIDialogHandlerTest, OtherOperation_NobodyRegistered_DisconnectsNothing) {
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_TRUE(forwarder_.calls().empty());
}

// The registered applications.

TEST_F(POSAccessUIDialogHandlerTest, CurrentApplicationName_IsThatOfTheLastSuccessfulRegistration) {
    EXPECT_EQ(handler_.currentApplicationName(), "");
    registered("Viewer");
    registered("Editor");
    handler_.prepareRegistration("Failing");
    EXPECT_EQ(handler_.currentApplicationName(), "Editor");
}

TEST_F(POSAccessUIDialogHandlerTest, Silenced_ByOption1121_UntilForgotten) {
    readOptions({1121});
    const uint32_t applicationId = registered("Editor");
    EXPECT_TRUE(handler_.isSilenced(applicationId));
    EXPECT_FALSE(handler_.isSilenced(applicationId + 1));
    handler_.forgetApplication(applicationId);
    EXPECT_FALSE(handler_.isSilenced(applicationId));
}

TEST_F(POSAccessUIDialogHandlerTest, Silenced_RegisteredAnewWithoutTheOption_IsNoLonger) {
    forwarder_.answer(10, test::registration(9));
    readOptions({1121});
    registered("Editor");
    registered("Editor");
    readOptions({});
    registered("Editor");
    EXPECT_FALSE(handler_.isSilenced(9));
}

TEST_F(POSAccessUIDialogHandlerTest, ServerMessage_IsShownWithItsTitleAndOK) {
    handler_.showServerMessage(1, {1, "Paper is low"});
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{{kMessageTitle, "Paper is low", kOK}}));
}

TEST_F(POSAccessUIDialogHandlerTest, ServerMessage_WithoutFlagOrText_IsNotShown) {
    handler_.showServerMessage(1, {0, "Paper is low"});
    handler_.showServerMessage(1, {1, ""});
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(POSAccessUIDialogHandlerTest, ServerMessage_OfSilencedApplication_IsNotShown) {
    readOptions({1121});
    const uint32_t silenced = registered("Editor");
    readOptions({});
    const uint32_t other = registered("Viewer");
    handler_.showServerMessage(silenced, {1, "hidden"});
    handler_.showServerMessage(other, {1, "shown"});
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{{kMessageTitle, "shown", kOK}}));
}

TEST_F(POSAccessUIDialogHandlerTest, ServerMessage_AlertThatThrows_DisturbsNothing) {
    dialog_->onShow = [] { throw std::bad_alloc(); };
    handler_.showServerMessage(1, {1, "Paper is low"});
    EXPECT_EQ(dialog_->shown.size(), 1u);
}

}  // namespace
}  // namespace dovrel
