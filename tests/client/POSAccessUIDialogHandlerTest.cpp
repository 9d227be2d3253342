#include "client/POSAccessUIDialogHandler.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "settings/ConfigFileSystem.h"
#include "settings/MultiLanguageSupport.h"
#include "tests/client/DialogHandlerFixture.h"
#include "tests/support/TraceLines.h"

namespace dovrel {
namespace {

using test::kOK;
using test::reportBody;
using test::ShownAlert;

class POSAccessUIDialogHandlerTest : public test::DialogHandlerFixture {};

TEST_F(POSAccessUIDialogHandlerTest, Run_WorkThatReturns_IsRunOnceSilently) {
    EXPECT_TRUE(runFailing(0, otherFailure));
    EXPECT_FALSE(handler_.run(0, [] { return POSOutcome::kUnlistedError; }));
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
    EXPECT_FALSE(handler_.run(applicationId, []() -> POSOutcome { throw otherFailure(); }));
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].body, reportBody("Editor", "broken", "Stopped."));
}

TEST_F(POSAccessUIDialogHandlerTest, Run_ThrownObjectOutsideTheFamily_IsReportedAsUnknown) {
    EXPECT_FALSE(handler_.run(0, []() -> POSOutcome { throw std::runtime_error("not for the user"); }));
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].body, reportBody("Unknown Application", kUnknown, "Stopped."));
}

TEST_F(POSAccessUIDialogHandlerTest, Run_AnswerRetryToAnAlertWithoutRetry_StillFails) {
    dialog_->answers = {11};
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
}

TEST_F(POSAccessUIDialogHandlerTest, Run_Failure_IsDeletedBeforeItsAlertIsShown) {
    struct WatchedFailure : POSMethodExecutionException {
        explicit WatchedFailure(bool& exists) : POSMethodExecutionException("broken"), exists_(exists) {
            exists_ = true;
        }
        ~WatchedFailure() override { exists_ = false; }
        bool& exists_;
    };
    bool exists = false;
    bool existedAtAlert = true;
    dialog_->onShow = [&] { existedAtAlert = exists; };
    EXPECT_FALSE(runFailing(1, [&] { return new WatchedFailure(exists); }));
    EXPECT_FALSE(existedAtAlert);
}

TEST_F(POSAccessUIDialogHandlerTest, Run_AlertThatThrows_EndsTheOperation) {
    dialog_->onShow = [] { throw 5; };
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_EQ(runs_, 1);
}

TEST_F(POSAccessUIDialogHandlerTest, Run_EachReportedFailure_IsAnEntryOfTheErrorLog) {
    EXPECT_FALSE(runFailing(1, otherFailure));
    const std::string log = root_.read(kErrorLogFile);
    EXPECT_NE(
        log.find("//APPLICATION\nSTR:Unknown Application\n//TYPE\nINT:28\n//TYPENAME\nSTR:method failed\n"
                 "//MESSAGE\nSTR:broken\n"),
        std::string::npos)
        << log;
}

TEST_F(POSAccessUIDialogHandlerTest, Run_ErrorOfTheServerThatIsNotThrown_IsInTheErrorLogAndNotShown) {
    const uint32_t applicationId = registered("Editor");
    EXPECT_FALSE(handler_.run(applicationId, [] {
        FailureNotes::addServerError(36, "no library");
        return POSOutcome::kUnlistedError;
    }));
    EXPECT_FALSE(handler_.runRegistration("Viewer", [] {
        FailureNotes::addServerError(99, "no idea");
        return POSOutcome::kUnlistedError;
    }));
    EXPECT_TRUE(dialog_->shown.empty());
    const auto sections = ConfigFileSystem::readSections(root_.read(kErrorLogFile), "TIME");
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[1].getString("APPLICATION"), "Editor");
    EXPECT_EQ(sections[1].getInt("TYPE"), 36);
    EXPECT_EQ(sections[1].getString("MESSAGE"), "no library");
    EXPECT_EQ(sections[1].getString("SERVERERROR"), "36 (library not found)");
    EXPECT_EQ(sections[1].getString("ALERT"), "none");
    EXPECT_EQ(sections[2].getString("APPLICATION"), "Viewer");
    EXPECT_EQ(sections[2].getInt("TYPE"), 23);
    EXPECT_EQ(sections[2].getString("MESSAGE"), "no idea");
    EXPECT_EQ(sections[2].getString("SERVERERROR"), "99 (unknown)");
}

TEST_F(POSAccessUIDialogHandlerTest, Run_NotesOfAnEarlierAttempt_AreForgotten) {
    handler_.run(0, [] {
        FailureNotes::addServerError(36, "earlier");
        FailureNotes::addFailedStep(TraceArea::kExchange, [] { return std::string("earlier"); });
        return POSOutcome::kDone;
    });
    EXPECT_FALSE(handler_.run(0, [] { return POSOutcome::kUnlistedError; }));
    EXPECT_NE(access(root_.path(kErrorLogFile).c_str(), F_OK), 0) << "there is nothing to log";
    EXPECT_FALSE(runFailing(1, otherFailure));
    EXPECT_EQ(root_.read(kErrorLogFile).find("earlier"), std::string::npos);
}

TEST_F(POSAccessUIDialogHandlerTest, Run_EachFailureInTheErrorLog_IsAnEntryOfTheTrace) {
    {
        const Trace trace("session,file=" + root_.path("trace"));
        EXPECT_FALSE(runFailing(1, otherFailure));
        handler_.run(0, [] {
            FailureNotes::addServerError(36, "a secret");
            return POSOutcome::kUnlistedError;
        });
    }
    EXPECT_EQ(
        test::splitTraceLines(root_.read("trace")),
        (std::vector<std::string>{
            "session: failure of type 28 (method failed), message: broken",
            "session: failure of type 36 (library not found), error of the server: 36 (library not found), "
            "no alert"}));
}

TEST_F(POSAccessUIDialogHandlerTest, UseBundle_LoadThatThrows_IsRecordedAndPassedOver) {
    // This path is longer than the platform allows, so the folder of the texts cannot be determined.
    setenv("POS_SYSTEM_ROOT", ("/" + std::string(8192, 'x')).c_str(), 1);
    ASSERT_FALSE(ignoringFailures([] { MultiLanguageSupport::initialize(""); }));
    {
        const Trace trace("session,file=" + root_.path("trace"));
        handler_.useBundle("/Dovrel.bundle");
    }
    EXPECT_EQ(MultiLanguageSupport::getText("DLL_ERROR_DIALOG_TITLE"), kErrorTitle);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_NE(
        root_.read("trace").find("no alert, message: Sorry, could not read file 'MultiLanguageTexts.mls'..."),
        std::string::npos)
        << root_.read("trace");
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

TEST_F(POSAccessUIDialogHandlerTest, Silenced_RegisteredAgainWithoutTheOption_IsNoLongerSilenced) {
    forwarder_.answer(posCommand::kRegisterApplication, test::registration(9));
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
