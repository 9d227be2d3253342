// The registration's frame: its options, and failures to which the user may respond with Retry.
#include "settings/ConfigFileSystem.h"
#include "tests/client/DialogHandlerFixture.h"

namespace dovrel {
namespace {

using test::kOK;
using test::kRetryCancel;
using test::reportBody;
using test::ShownAlert;

class RegistrationFrameTest : public test::DialogHandlerFixture {};

TEST_F(RegistrationFrameTest, Options_None_SetAllFlags) {
    readOptions({});
    EXPECT_TRUE(handler_.flags().withoutOption1104);
    EXPECT_TRUE(handler_.flags().showsRegistrationFailures);
    EXPECT_TRUE(handler_.flags().showsServerMessages);
}

TEST_F(RegistrationFrameTest, Options_EachCodeClearsItsFlagOnly) {
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

TEST_F(RegistrationFrameTest, Options_OtherCodesAreIgnoredAndOrderDoesNotMatter) {
    readOptions({0, 1105, 1121, 65535, 1104});
    EXPECT_FALSE(handler_.flags().withoutOption1104);
    EXPECT_TRUE(handler_.flags().showsRegistrationFailures);
    EXPECT_FALSE(handler_.flags().showsServerMessages);
}

TEST_F(RegistrationFrameTest, Options_LengthZeroOneOrOdd_AreIgnoredButFlagsAreStillSet) {
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

TEST_F(RegistrationFrameTest, Options_NullCountsAsNone) {
    handler_.readOptions(nullptr, 4);
    EXPECT_TRUE(handler_.flags().withoutOption1104);
}

TEST_F(RegistrationFrameTest, Options_CanBeAtAnyAddress) {
    alignas(uint16_t) char bytes[] = "?\x50\x04";  // 1104, least significant byte first, after one byte
    handler_.readOptions(reinterpret_cast<const uint16_t*>(bytes + 1), 2);
    EXPECT_FALSE(handler_.flags().withoutOption1104);
}

TEST_F(RegistrationFrameTest, Refusal_Retry_RunsTheWorkAgain) {
    dialog_->answers = {11, 11};
    EXPECT_TRUE(registerFailing(2, refusal));
    EXPECT_EQ(runs_, 3);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusalAlert_, refusalAlert_}));
}

TEST_F(RegistrationFrameTest, Refusal_Cancel_AsksASecondTimeAndTakesThatAnswer) {
    dialog_->answers = {13, 13};
    EXPECT_FALSE(registerFailing(1, refusal));
    EXPECT_EQ(runs_, 1);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusalAlert_, attentionAlert_}));
}

TEST_F(RegistrationFrameTest, Refusal_CancelThenRetry_RunsTheWorkAgain) {
    dialog_->answers = {13, 11};
    EXPECT_TRUE(registerFailing(1, refusal));
    EXPECT_EQ(runs_, 2);
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{refusalAlert_, attentionAlert_}));
}

TEST_F(RegistrationFrameTest, Refusal_AlertThatCannotBeShown_FailsWithoutASecondOne) {
    dialog_->answers = {0};
    EXPECT_FALSE(registerFailing(1, refusal));
    EXPECT_EQ(dialog_->shown, std::vector<ShownAlert>{refusalAlert_});
}

TEST_F(RegistrationFrameTest, Refusal_AnswerTen_CountsAsRetryAtRegistration) {
    dialog_->answers = {10, 13, 10};
    EXPECT_TRUE(registerFailing(2, refusal));
    EXPECT_EQ(runs_, 3);
}

TEST_F(RegistrationFrameTest, Refusal_OutsideRegistration_OffersRetryAndCancelButTenIsNotARetry) {
    dialog_->answers = {11, 13, 11, 10};
    EXPECT_FALSE(runFailing(3, refusal));
    EXPECT_EQ(runs_, 3);
    const ShownAlert unknown{kErrorTitle, reportBody("Unknown Application", "refused", "Register."),
                             kRetryCancel};
    EXPECT_EQ(dialog_->shown, (std::vector<ShownAlert>{unknown, unknown, attentionAlert_, unknown}));
}

TEST_F(RegistrationFrameTest, Registration_AnswerTenToAnotherFailure_IsNotARetry) {
    dialog_->answers = {10};
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
}

TEST_F(RegistrationFrameTest, Option1120_RefusalAtRegistration_FailsAtOnceWithoutAnAlert) {
    readOptions({1120});
    EXPECT_FALSE(registerFailing(1, refusal));
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(runs_, 1);
}

TEST_F(RegistrationFrameTest, Option1120_RefusalWithoutAnAlert_IsInTheErrorLog) {
    readOptions({1120});
    EXPECT_FALSE(registerFailing(1, refusal));
    const auto sections = ConfigFileSystem::readSections(root_.read(kErrorLogFile), "TIME");
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[1].getString("APPLICATION"), "Editor");
    EXPECT_EQ(sections[1].getString("MESSAGE"), "refused");
    EXPECT_EQ(sections[1].getString("ALERT"), "none");
}

TEST_F(RegistrationFrameTest, Option1120_OtherFailureAtRegistration_IsShown) {
    readOptions({1120});
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{{kErrorTitle, reportBody("Editor", "broken", "Stopped."), kOK}}));
}

TEST_F(RegistrationFrameTest, Option1120_RefusalOutsideRegistration_IsShown) {
    readOptions({1120});
    EXPECT_FALSE(runFailing(1, refusal));
    EXPECT_FALSE(dialog_->shown.empty());
}

TEST_F(RegistrationFrameTest, Registration_NobodyRegistered_DisconnectsBeforeTheFailureIsShown) {
    std::vector<std::string> callsWhenShown;
    dialog_->onShow = [&] { callsWhenShown = forwarder_.calls(); };
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_EQ(callsWhenShown, std::vector<std::string>{"check"});
}

TEST_F(RegistrationFrameTest, Registration_SomebodyRegistered_KeepsTheConnection) {
    registered("Viewer");
    forwarder_.forgetCalls();
    EXPECT_FALSE(registerFailing(1, otherFailure));
    EXPECT_TRUE(forwarder_.calls().empty());
}

TEST_F(RegistrationFrameTest, Registration_Failure_ShowsTheNameThatWasGiven) {
    registered("Viewer");
    EXPECT_FALSE(registerFailing(1, otherFailure));
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].body, reportBody("Editor", "broken", "Stopped."));
}

TEST_F(RegistrationFrameTest, OtherOperation_NobodyRegistered_DisconnectsNothing) {
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_TRUE(forwarder_.calls().empty());
}

}  // namespace
}  // namespace dovrel
