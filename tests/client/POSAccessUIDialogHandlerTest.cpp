#include "client/POSAccessUIDialogHandler.h"

#include <cstdlib>
#include <stdexcept>

#include "settings/MultiLanguageSupport.h"
#include "tests/client/DialogHandlerFixture.h"

namespace dovrel {
namespace {

using test::kOK;
using test::reportBody;
using test::ShownAlert;

class POSAccessUIDialogHandlerTest : public test::DialogHandlerFixture {};

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

TEST_F(POSAccessUIDialogHandlerTest, SetBundlePath_LoadThatThrows_IsPassedOver) {
    // No path of the platform is so long, so the place of the texts cannot be told.
    setenv("POS_SYSTEM_ROOT", ("/" + std::string(8192, 'x')).c_str(), 1);
    const Attempt load = attempt([] {
        MultiLanguageSupport::initialize("");
        return true;
    });
    ASSERT_TRUE(load.failure);
    handler_.setBundlePath("/Dovrel.bundle");
    EXPECT_EQ(MultiLanguageSupport::getText("DLL_ERROR_DIALOG_TITLE"), kErrorTitle);
}

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
