// Which messages of the server reach the user, with or without option 1104, and in which encoding.
#include "tests/client/SessionOperationsTest.h"

namespace dovrel {
namespace {

using test::kOK;
using test::reportBody;
using test::ShownAlert;

class ServerMessagesTest : public test::SessionOperationsTest {};

TEST_F(ServerMessagesTest, ServerMessage_IsShownAfterInstantiationAndCall) {
    const uint32_t applicationId = registered();
    forwarder_->answer(posCommand::kInstantiateObject, test::object("object", 1, "Made."));
    forwarder_->answer(posCommand::kCallMethod, test::result("", 0x80000000, "Called."));
    EXPECT_EQ(instantiate(applicationId), POS_OK);
    posFreeDllHeapData(object_);
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{{kMessageTitle, "Made.", kOK}, {kMessageTitle, "Called.", kOK}}));
}

TEST_F(ServerMessagesTest, ServerMessage_FlagWordZeroOrEmptyText_IsNoMessage) {
    const uint32_t applicationId = registered();
    forwarder_->answerNext(posCommand::kCallMethod, {test::result("", 0, "Text"), test::result("", 1, "")});
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(ServerMessagesTest, ServerMessage_SilencedApplication_IsNotShownButItsFailuresAre) {
    const uint32_t applicationId = registered("Editor", {1121});
    forwarder_->answerNext(posCommand::kCallMethod,
                           {test::result("", 1, "Called."), test::error(28, "broken")});
    EXPECT_EQ(call(applicationId), POS_OK);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "broken", "Stopped."));
}

TEST_F(ServerMessagesTest, ServerMessage_FailedOperation_ShowsNone) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(posCommand::kCallMethod, [](POSTransferObj& request) {
        auto answer = test::error(28, "broken")(request);
        answer->writeString(120, std::string("\x01\0\0\0Called.", 11));
        return answer;
    });
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "broken", "Stopped."));
}

// Option 1104.

TEST_F(ServerMessagesTest, Option1104_HasNoOtherEffectThanBeingSent) {
    forwarder_->answer(posCommand::kInstantiateObject, test::object("object", 1, "Made."));
    forwarder_->answerNext(posCommand::kRegisterApplication, {test::error(32, "refused")});
    forwarder_->answer(posCommand::kCallMethod, test::error(28, "broken"));
    dialog_->answers = {11, 12, 12};
    const uint32_t applicationId = registered("Editor", {1104});
    EXPECT_EQ(instantiate(applicationId), POS_OK);
    posFreeDllHeapData(object_);
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{
                  {kErrorTitle, reportBody("Editor", "refused", "Register."), test::kRetryCancel},
                  {kMessageTitle, "Made.", kOK},
                  {kErrorTitle, reportBody("Editor", "broken", "Stopped."), kOK}}));
    EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(114), "\x50\x04");
    EXPECT_FALSE(currentSession()->dialogHandler().flags().withoutOption1104);
}

// Encodings. The bytes are Mac Roman and not valid UTF-8.

TEST_F(ServerMessagesTest, BytesOutsideAscii_PassUnchangedToTheServerTheAlertsAndTheLog) {
    const std::string name = "\x80\x8A\xD2\xFF";
    const std::string failure = "\x9F\xA7 \x8E";
    const std::string message = "\xC7\xCA\xE7\xC8";
    forwarder_->answer(posCommand::kInstantiateObject, test::object("object", 1, message));
    forwarder_->answer(posCommand::kCallMethod, test::error(28, failure));
    const uint32_t applicationId = registered(name.c_str());
    EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(100),
              name + std::string(1, '\0'));
    EXPECT_EQ(instantiate(applicationId), POS_OK);
    posFreeDllHeapData(object_);
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{{kMessageTitle, message, kOK},
                                       {kErrorTitle, reportBody(name, failure, "Stopped."), kOK}}));
    const std::string log = root_.read(kErrorLogFile);
    EXPECT_NE(log.find("//APPLICATION\nSTR:" + name + "\n"), std::string::npos);
    EXPECT_NE(log.find("//MESSAGE\nSTR:" + failure + "\n"), std::string::npos);
}

}  // namespace
}  // namespace dovrel
