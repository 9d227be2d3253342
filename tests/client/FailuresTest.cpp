// Tests the alerts and the results of failed operations of the session.
#include <functional>
#include <new>

#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "settings/ConfigFileSystem.h"
#include "tests/client/SessionOperationsTest.h"

namespace dovrel {
namespace {

using test::kOK;
using test::kRetryCancel;
using test::reportBody;
using test::ShownAlert;

class FailuresTest : public test::SessionOperationsTest {};

TEST_F(FailuresTest, Instantiate_ClassNotRegistered_FailsWithItsTextWhenTheServerAsksForTheCheck) {
    forwarder_->answer(posCommand::kRegisterApplication, test::registration(3, 1));
    registered("Editor", {}, {"Clock"});
    EXPECT_EQ(instantiate(3), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", kClassMissing, "Stopped."));
    EXPECT_EQ(object_, nullptr);
    EXPECT_EQ(forwarder_->countOccurrences("instantiate object"), 0u);
}

TEST_F(FailuresTest, ErrorAnswer24_ShowsTheDriverTextAndFailsAfterOK) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(posCommand::kInstantiateObject, test::error(24, "no driver"));
    dialog_->answers = {12};
    EXPECT_EQ(instantiate(applicationId), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", "no driver", "Driver."));
    EXPECT_EQ(object_, nullptr);
}

TEST_F(FailuresTest, ErrorAnswer32_OutsideRegistration_CanBeRetried) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answerNext(posCommand::kCallMethod, {test::error(32, "register first")});
    dialog_->answers = {11};
    EXPECT_EQ(call(applicationId), POS_OK);
    posDeleteDLLHeapData(result_);
    EXPECT_EQ(dialog_->shown,
              (std::vector<ShownAlert>{
                  {kErrorTitle, reportBody("Editor", "register first", "Register."), kRetryCancel}}));
    EXPECT_EQ(forwarder_->countOccurrences("check"), 0u);
}

TEST_F(FailuresTest, ErrorAnswersWithCode36OrUnlisted_FailEveryOperationSilently) {
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
        EXPECT_EQ(resultLength_, 0u);
        EXPECT_EQ(getInfo(applicationId), POS_FAILURE);
        EXPECT_EQ(result_, nullptr);
        EXPECT_EQ(infoLength_, 0);
        EXPECT_EQ(posUnregisterApplication(applicationId), POS_FAILURE);
        EXPECT_TRUE(currentSession()->client().isRegistered(applicationId));
    }
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(FailuresTest, ErrorAnswersWithCode36OrUnlisted_AreInTheErrorLogWithTheirRequest) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(posCommand::kCallMethod, test::error(36, "no library"));
    forwarder_->answer(posCommand::kGetInformation, test::error(0xFFFFFFFF, "no idea"));
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    EXPECT_EQ(getInfo(applicationId), POS_FAILURE);
    const auto sections = ConfigFileSystem::readSections(root_.read(kErrorLogFile), "TIME");
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[1].getString("APPLICATION"), "Editor");
    EXPECT_EQ(sections[1].getString("MESSAGE"), "no library");
    EXPECT_EQ(sections[1].getString("REQUEST"), "call method, method name = \"add\"");
    EXPECT_EQ(sections[1].getString("SERVERERROR"), "36 (library not found)");
    EXPECT_EQ(sections[2].getString("REQUEST"), "get information");
    EXPECT_EQ(sections[2].getString("SERVERERROR"), "4294967295 (unknown)");
}

TEST_F(FailuresTest, AnswerThatCannotBeRead_IsInTheErrorLogWithItsErrorSite) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(posCommand::kCallMethod,
                       [](POSTransferObj&) { return std::make_unique<POSTransferObj>(1, 11, 14); });
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    const auto sections = ConfigFileSystem::readSections(root_.read(kErrorLogFile), "TIME");
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[1].getInt("TYPE"), 3);
    EXPECT_EQ(sections[1].getString("MESSAGE"), "2");
    EXPECT_EQ(sections[1].getString("DETAIL"), "384181A400FA:");
}

TEST_F(FailuresTest, AnswerThatCannotBeRead_IsAnUnrecoverableFailure) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(posCommand::kCallMethod,
                       [](POSTransferObj&) { return std::make_unique<POSTransferObj>(1, 11, 14); });
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    ASSERT_EQ(dialog_->shown.size(), 1u);
    EXPECT_EQ(dialog_->shown[0].buttons, kOK);
    const std::string& body = dialog_->shown[0].body;
    EXPECT_EQ(body.substr(body.size() - 8), "Stopped.");
}

TEST_F(FailuresTest, ExceptionThatIsNotOfTheLibrary_IsInTheErrorLogByItsName) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->onRequest = [] { throw std::bad_alloc(); };
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    forwarder_->onRequest = [] { throw 5; };
    EXPECT_EQ(call(applicationId), POS_FAILURE);
    forwarder_->onRequest = nullptr;
    const auto sections = ConfigFileSystem::readSections(root_.read(kErrorLogFile), "TIME");
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[1].getString("MESSAGE"), kUnknown);
    EXPECT_EQ(sections[1].getString("EXCEPTION"), "std::bad_alloc");
    EXPECT_FALSE(sections[2].contains("EXCEPTION"));
}

TEST_F(FailuresTest, Outputs_MayBeTheInputs) {
    const uint32_t applicationId = registered();
    void* handle = identifier_;
    EXPECT_EQ(posInstantiateObject(applicationId, &handle, &handle), POS_OK);
    EXPECT_EQ(forwarder_->lastRequest(posCommand::kInstantiateObject)->readString(106),
              std::string("Counter\0\0\0\0\0\0\0\0\0", 16));
    EXPECT_NE(handle, identifier_);
    posFreeDllHeapData(handle);
}

TEST_F(FailuresTest, OutputsOfAFailedCallOrCommand_AreClearedWhateverTheyHeld) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->answer(posCommand::kCallMethod, test::error(30, "no such method"));
    forwarder_->answer(posCommand::kExecuteCommand, test::error(30, "no such command"));
    uint8_t before = 0;
    uint8_t* result = &before;
    uint32_t length = 1;
    EXPECT_EQ(posCallMethod(applicationId, &identifier_, "add", nullptr, 0, &result, &length), POS_FAILURE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(forwarder_->countOccurrences("call method"), 1u);
    result = &before;
    length = 1;
    EXPECT_EQ(posExecuteCMD(applicationId, &identifier_, 16, &identifier_, 16, &result, &length),
              POS_FAILURE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(forwarder_->countOccurrences("execute command"), 1u);
    EXPECT_EQ(dialog_->shown.size(), 2u);
}

// The input must still be there when the user presses Retry.
TEST_F(FailuresTest, OutputsThatAreTheInputs_AreClearedAfterTheLastAttemptOnly) {
    const uint32_t applicationId = registered("Editor");
    const std::string identifier("Counter\0\0\0\0\0\0\0\0\0", 16);
    forwarder_->answer(posCommand::kCallMethod, test::error(32, "register first"));
    forwarder_->answer(posCommand::kExecuteCommand, test::error(32, "register first"));
    dialog_->answers = {11, 12, 11, 12};
    uint32_t length = 16;
    void* handle = identifier_;
    EXPECT_EQ(posCallMethod(applicationId, &handle, "add", nullptr, 0, reinterpret_cast<uint8_t**>(&handle),
                            &length),
              POS_FAILURE);
    ASSERT_EQ(forwarder_->countOccurrences("call method"), 2u);
    EXPECT_EQ(forwarder_->lastRequest(posCommand::kCallMethod)->readString(105), identifier);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(length, 0u);
    length = 16;
    handle = identifier_;
    EXPECT_EQ(posExecuteCMD(applicationId, &handle, length, &handle, length,
                            reinterpret_cast<uint8_t**>(&handle), &length),
              POS_FAILURE);
    EXPECT_EQ(forwarder_->countOccurrences("execute command"), 2u);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(length, 0u);
}

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

class ThrowingTest : public FailuresTest, public testing::WithParamInterface<Thrown> {};

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
        EXPECT_EQ(object_, nullptr) << index;
        EXPECT_EQ(result_, nullptr) << index;
        EXPECT_EQ(resultLength_, 0u) << index;
        EXPECT_EQ(infoLength_, 0) << index;
        ++index;
    }
    EXPECT_EQ(applicationId, 99u);
    EXPECT_TRUE(currentSession()->client().isRegistered(app));
    forwarder_->onRequest = nullptr;
}

INSTANTIATE_TEST_SUITE_P(EveryKind, ThrowingTest, testing::ValuesIn(kThrown),
                         [](const auto& thrown) { return thrown.param.name; });

}  // namespace
}  // namespace dovrel
