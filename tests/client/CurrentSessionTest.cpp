#include "client/CurrentSession.h"

#include <sys/stat.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "client/exceptions/POSException.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"
#include "tests/client/SessionTest.h"
#include "tests/client/WatchedMutex.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::AcceptingForwarder;

/// A session that is not open yet.
class CurrentSessionTest : public test::SessionTest {
  protected:
    CurrentSessionTest() { closeSession(); }
};

TEST_F(CurrentSessionTest, Open_MakesTheSessionAndSendsNothing) {
    EXPECT_EQ(currentSession(), nullptr);
    openSession(parts_);
    ASSERT_NE(currentSession(), nullptr);
    EXPECT_TRUE(forwarder_->calls().empty());
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(currentSession()->currentApplication(), 0xFFFFFFFFu);
}

TEST_F(CurrentSessionTest, Open_LoadsTheTextsFromTheInstalledBundle) {
    root_.write(kTexts, "//LANGUAGE\nSTR:English\n//DLL_ERROR_DIALOG_TITLE\nSTR:Freshly read\n");
    openSession(parts_);
    EXPECT_EQ(MultiLanguageSupport::getText(kDllErrorDialogTitle), "Freshly read");
}

TEST_F(CurrentSessionTest, Open_WithoutTexts_StillMakesASession) {
    ASSERT_EQ(unlink(root_.path(kTexts).c_str()), 0);
    openSession(parts_);
    ASSERT_NE(currentSession(), nullptr);
    forwarder_->answer(posCommand::kGetInformation, test::error(0, "message"));
    uint8_t* info = nullptr;
    int32_t length = 0;
    EXPECT_EQ(posGetInfo(0, "x", 1, &info, &length), POS_FAILURE);
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].title, "");
    EXPECT_EQ(dialog_->shown[0].body, "Unknown Applicationmessage\r\r");
}

TEST_F(CurrentSessionTest, Open_BringsTheLogFolderIntoBeing) {
    openSession(parts_);
    struct stat status = {};
    ASSERT_EQ(stat(root_.path("Library/Logs/Tessilor").c_str(), &status), 0);
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777, 0777u);
    EXPECT_NE(stat(root_.path(kErrorLogFile).c_str(), &status), 0);
}

TEST_F(CurrentSessionTest, Open_WhileThereIsASession_LeavesItAndItsRegistrations) {
    openSession(parts_);
    const POSAccessUserInteraction* const session = currentSession();
    const uint32_t applicationId = registered("Editor");
    openSession(parts_);
    EXPECT_EQ(currentSession(), session);
    EXPECT_STREQ(currentSession()->client().applicationName(applicationId), "Editor");
}

TEST_F(CurrentSessionTest, Close_UnregistersThenDestroysTheForwarder) {
    openSession(parts_);
    registered("Editor");
    registered("Viewer");
    forwarder_->forgetCalls();
    const auto calls = forwarder_->watchCalls();
    closeSession();
    EXPECT_EQ(*calls, (std::vector<std::string>{"connect 10", "unregister application",
                                                "unregister application", "destroyed"}));
    EXPECT_EQ(currentSession(), nullptr);
}

TEST_F(CurrentSessionTest, Close_DestroysTheForwarderBeforeTheSession) {
    struct EndingMutex : test::WatchedMutex {
        EndingMutex(test::LockUse& use, std::function<void()> atEnd)
            : WatchedMutex(use), atEnd_(std::move(atEnd)) {}
        ~EndingMutex() override { atEnd_(); }
        const std::function<void()> atEnd_;
    };
    test::LockUse use;
    std::shared_ptr<const std::vector<std::string>> calls;
    bool isForwarderGone = false;
    const auto noteEnd = [&] { isForwarderGone = !calls->empty() && calls->back() == "destroyed"; };
    parts_.createLock = [&] { return std::make_unique<EndingMutex>(use, noteEnd); };
    openSession(parts_);
    calls = forwarder_->watchCalls();
    closeSession();
    EXPECT_TRUE(isForwarderGone);
}

TEST_F(CurrentSessionTest, Close_WithoutApplications_SendsNothing) {
    openSession(parts_);
    const auto calls = forwarder_->watchCalls();
    closeSession();
    EXPECT_EQ(*calls, std::vector<std::string>{"destroyed"});
}

TEST_F(CurrentSessionTest, Close_FailureOfTheShutdown_IsNeitherShownNorPassedOn) {
    openSession(parts_);
    registered("Editor");
    registered("Viewer");
    forwarder_->answer(posCommand::kUnregisterApplication, test::error(34, "who?"));
    bool shown = false;
    dialog_->onShow = [&shown] { shown = true; };
    const auto calls = forwarder_->watchCalls();
    closeSession();
    EXPECT_FALSE(shown);
    EXPECT_EQ(calls->back(), "destroyed");
    EXPECT_EQ(calls->at(calls->size() - 2), "unregister application");
    EXPECT_EQ(std::count(calls->begin(), calls->end(), "unregister application"), 1);
}

TEST_F(CurrentSessionTest, Close_ShutdownThatThrowsNoObjectOfTheFamily_StillEndsTheSession) {
    openSession(parts_);
    registered("Editor");
    forwarder_->onRequest = [] { throw std::runtime_error("not of the family"); };
    const auto calls = forwarder_->watchCalls();
    closeSession();
    EXPECT_EQ(calls->back(), "destroyed");
    EXPECT_EQ(currentSession(), nullptr);
}

TEST_F(CurrentSessionTest, Close_ThenOpen_BuildsAFreshSession) {
    openSession(parts_);
    const uint32_t applicationId = registered("Editor");
    closeSession();
    openSession(parts_);
    EXPECT_FALSE(currentSession()->client().isRegistered(applicationId));
    EXPECT_EQ(registered("Viewer"), 1u);
}

TEST_F(CurrentSessionTest, Open_FailingHalfWay_ReleasesTheForwarderAndLeavesNoSession) {
    std::shared_ptr<const std::vector<std::string>> calls;
    const auto create = parts_.createForwarder;
    parts_.createForwarder = [&] {
        auto forwarder = create();
        calls = forwarder_->watchCalls();
        return forwarder;
    };
    const auto createLock = parts_.createLock;

    parts_.createLock = []() -> std::unique_ptr<Mutex> { throw std::bad_alloc(); };
    EXPECT_THROW(openSession(parts_), std::bad_alloc);
    EXPECT_EQ(*calls, std::vector<std::string>{"destroyed"});
    EXPECT_EQ(currentSession(), nullptr);

    parts_.createLock = []() -> std::unique_ptr<Mutex> { throw new CPPException("no lock"); };
    EXPECT_EQ(test::failureText([this] { openSession(parts_); }), "no lock");
    EXPECT_EQ(*calls, std::vector<std::string>{"destroyed"});
    EXPECT_EQ(currentSession(), nullptr);

    parts_.createLock = createLock;
    openSession(parts_);
    EXPECT_NE(currentSession(), nullptr);
}

TEST_F(CurrentSessionTest, Open_ForwarderThatCannotBeMade_LeavesNoSession) {
    parts_.createForwarder = []() -> std::unique_ptr<POSTransferObjForwarder> { throw std::bad_alloc(); };
    EXPECT_THROW(openSession(parts_), std::bad_alloc);
    EXPECT_EQ(currentSession(), nullptr);
}

}  // namespace
}  // namespace dovrel
