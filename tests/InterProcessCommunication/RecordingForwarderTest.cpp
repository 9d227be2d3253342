#include "InterProcessCommunication/RecordingForwarder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/RecordingFormat.h"
#include "client/exceptions/POSException.h"
#include "platform/Environment.h"
#include "settings/ConfigFileSystem.h"
#include "tests/InterProcessCommunication/PreparedForwarder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

class RecordingForwarderTest : public testing::Test {
  protected:
    /// Returns a forwarder that records into the file and passes everything on to `prepared_`.
    std::unique_ptr<RecordingForwarder> record(const std::string& path) {
        auto inner = std::make_unique<test::PreparedForwarder>();
        prepared_ = inner.get();
        return std::make_unique<RecordingForwarder>(std::move(inner), path);
    }

    std::vector<Properties> sections() const {
        return ConfigFileSystem::readSections(folder_.read("recording"), recording::kSectionKey);
    }

    const test::TemporaryFolder folder_;
    POSTransferObj request_{1, 10, 13};
    test::PreparedForwarder* prepared_ = nullptr;
};

TEST_F(RecordingForwarderTest, Exchange_PassesUnchangedAndIsRecorded) {
    const auto forwarder = record(folder_.path("recording"));
    prepared_->answerParts(test::kNormalAnswer);
    const std::unique_ptr<POSTransferObj> reply(forwarder->ForwardTransferObj(request_));
    EXPECT_EQ(prepared_->calls(), std::vector<std::string>{"delete object"});
    EXPECT_EQ(reply->getMessageKind(), 11u);
    ASSERT_EQ(sections().size(), 1u);
    EXPECT_EQ(sections()[0].getString("EXCHANGE"), "delete object");
    EXPECT_EQ(test::toHex(*sections()[0].getBinary("request")), test::toHex(request_.bytes()));
    EXPECT_EQ(test::toHex(*sections()[0].getBinary("reply")), test::toHex(reply->bytes()));
    EXPECT_EQ(sections()[0].getInt("process"), getpid());
    EXPECT_GE(sections()[0].getInt("microseconds"), 0);
}

TEST_F(RecordingForwarderTest, ReplyThatCannotBeRead_PassesUnreadAndIsRecorded) {
    const auto forwarder = record(folder_.path("recording"));
    prepared_->answerBytes(test::makeArray("no block"));
    const std::unique_ptr<POSTransferObj> reply(forwarder->ForwardTransferObj(request_));
    EXPECT_EQ(test::toText(reply->bytes()), "no block");
    EXPECT_EQ(test::toText(*sections().at(0).getBinary("reply")), "no block");
}

TEST_F(RecordingForwarderTest, FailureOfTheExchange_PassesAsItIsAndIsRecorded) {
    const auto forwarder = record(folder_.path("recording"));
    prepared_->throwAtRequest("The line is dead.");
    const auto failure =
        test::failureOf<POSException>([&] { delete forwarder->ForwardTransferObj(request_); });
    ASSERT_NE(failure, nullptr);
    EXPECT_STREQ(failure->getMessage(), "The line is dead.");
    EXPECT_EQ(sections().at(0).getString("failure"), "The line is dead.");
}

TEST_F(RecordingForwarderTest, MemoryThatRanOutInTheExchange_PassesAsItIsAndIsRecorded) {
    const auto forwarder = record(folder_.path("recording"));
    prepared_->answerNext([](POSTransferObj&) -> std::unique_ptr<POSTransferObj> { throw std::bad_alloc(); });
    EXPECT_THROW(delete forwarder->ForwardTransferObj(request_), std::bad_alloc);
    EXPECT_EQ(sections().at(0).getString("failure"), "out of memory");
    EXPECT_EQ(test::toHex(*sections()[0].getBinary("request")), test::toHex(request_.bytes()));
}

TEST_F(RecordingForwarderTest, RecordingThatCannotBeWritten_ChangesNothing) {
    const auto forwarder = record(folder_.path("missing/recording"));
    prepared_->answerParts(test::kNormalAnswer);
    prepared_->throwAtRequest("The line is dead.");
    const std::unique_ptr<POSTransferObj> reply(forwarder->ForwardTransferObj(request_));
    EXPECT_EQ(reply->getMessageKind(), 11u);
    EXPECT_EQ(test::failureText([&] { delete forwarder->ForwardTransferObj(request_); }),
              "The line is dead.");
}

TEST_F(RecordingForwarderTest, OtherCalls_PassAndAreNotRecorded) {
    const auto forwarder = record(folder_.path("recording"));
    forwarder->ConnectToPOS(10);
    forwarder->CheckConnection();
    EXPECT_EQ(test::toHex(forwarder->GetClientProcessID()), test::kProcessIdentity);
    EXPECT_EQ(prepared_->calls(), (std::vector<std::string>{"connect 10", "check", "identify"}));
    EXPECT_NE(access(folder_.path("recording").c_str(), F_OK), 0);
}

TEST_F(RecordingForwarderTest, RecordIfRequested_WithoutTheVariable_IsTheForwarderItself) {
    setEnvironmentSource([](const char*) -> const char* { return nullptr; });
    auto inner = std::make_unique<test::PreparedForwarder>();
    const POSTransferObjForwarder* const itself = inner.get();
    EXPECT_EQ(recordIfRequested(std::move(inner)).get(), itself);
    setEnvironmentSource(nullptr);
}

TEST_F(RecordingForwarderTest, RecordIfRequested_WithTheVariable_Records) {
    setEnvironmentSource(
        [](const char* name) { return name == std::string("POS_RECORD") ? "/dev/null" : nullptr; });
    const auto forwarder = recordIfRequested(std::make_unique<test::PreparedForwarder>());
    EXPECT_NE(dynamic_cast<RecordingForwarder*>(forwarder.get()), nullptr);
    setEnvironmentSource(nullptr);
}

}  // namespace
}  // namespace dovrel
