#include "server/ImportedClasses.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "server/ControlCalls.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/RecordedHost.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;

class ImportedClassesTest : public testing::Test {
  protected:
    /// Imports the classes of the recording into a server, which has no other classes of these identifiers.
    void import() {
        EXPECT_NE(bytesToText(control_.handle("//importClasses\nSTR:" + path_ + "\n").parameter->bytes())
                      .find("//problems\nINT:0\n"),
                  std::string::npos);
        session_ = send(registerRequest("Another")).number(posField::kSession);
    }
    Reply send(const Request& request) { return Reply(handler_.handle(request.bytes(), 0)->bytes()); }
    std::string instantiate(const std::string& className) {
        return send(instantiateRequest(session_, className)).data(posField::kObject);
    }
    Reply call(const std::string& object, const std::string& method, const std::string& argument) {
        return send(callRequest(session_, object, method, argument));
    }

    const dovrel::test::TemporaryFolder folder_;
    const std::string path_ = folder_.path("recording");
    RecordedHost recorded_{path_};
    FakeProcess process_;
    ServerState state_{5000};
    ExchangeLog log_{"/dev/null"};
    ControlCalls control_{state_, process_, log_};
    RequestHandler handler_{state_};
    uint32_t session_ = 0;
};

TEST_F(ImportedClassesTest, Methods_ReturnWhatTheyReturnedForTheSameArgument) {
    const uint32_t session = recorded_.registerApplication();
    const std::string counter = recorded_.instantiate(session, "Counter");
    for (const uint32_t number : {5u, 5u, 1u})
        recorded_.send(callRequest(session, counter, "add", littleEndian(number)));
    recorded_.send(callRequest(session, counter, "value"));
    recorded_.send(callRequest(session, counter, "value", "unexpected"));
    import();
    const std::string object = instantiate("Counter");
    EXPECT_EQ(call(object, "add", littleEndian(5)).data(posField::kResult), littleEndian(5));
    EXPECT_EQ(call(object, "add", littleEndian(1)).data(posField::kResult), littleEndian(11));
    EXPECT_EQ(call(object, "add", littleEndian(5)).data(posField::kResult), littleEndian(10));
    EXPECT_EQ(call(object, "add", littleEndian(5)).data(posField::kResult), littleEndian(10));
    EXPECT_EQ(call(object, "value", "").data(posField::kResult), littleEndian(11));
    EXPECT_EQ(call(object, "value", "unexpected").code(), 30u);
    EXPECT_EQ(call(object, "value", "unexpected").text(), "the method takes no argument");
    const Reply unknown = call(object, "add", littleEndian(2));
    EXPECT_EQ(unknown.code(), 28u);
    EXPECT_EQ(unknown.text(), "The recording has no call with this argument.");
    EXPECT_EQ(call(object, "reset", "").code(), 27u);
}

TEST_F(ImportedClassesTest, Messages_ComeAgain) {
    const uint32_t session = recorded_.registerApplication();
    const Request creation = instantiateRequest(session, "Scanner");
    dovrel::POSTransferObj reply(1, 11, 12);
    reply.writeString(posField::kObject, std::string(16, 'o'));
    reply.writeString(posField::kServerMessage, littleEndian(3) + "Two\nlines.");
    recorded_.add(creation, reply.bytes());
    import();
    EXPECT_EQ(send(instantiateRequest(session_, "Scanner")).data(posField::kServerMessage),
              littleEndian(3) + "Two\nlines.");
}

TEST_F(ImportedClassesTest, DescribeClasses_IsASettingsTextThatPeopleCanEdit) {
    const uint32_t session = recorded_.registerApplication();
    const std::string echo = recorded_.instantiate(session, "Echo");
    recorded_.send(callRequest(session, echo, "echo", "hello"));
    recorded_.send(callRequest(session, echo, "echo", "\x01"));
    std::vector<std::string> problems;
    EXPECT_EQ(describeClasses(Recording(path_, problems)),
              "//CLASS\nSTR:Echo\n//identifier\nBAR:4563686F000000000000000000000000\n"
              "//methods\nSTR:echo\n//echo.cases\nSTR:case1, case2\n"
              "//echo.case1.argument\nSTR:hello\n//echo.case1.answer\nSTR:hello\n"
              "//echo.case2.argument\nBAR:01\n//echo.case2.answer\nBAR:01\n"
              "//echo.errorCode\nINT:28\n"
              "//echo.errorText\nSTR:The recording has no call with this argument.\n");
}

TEST_F(ImportedClassesTest, ValuesThatDoNotFit_AreProblemsThatNameTheRecording) {
    dovrel::POSTransferObj reply(1, 20, 12);
    reply.writeString(posField::kExceptionText, "x");
    reply.writeUInt32(posField::kExceptionCode, 0x80000000);
    recorded_.add(instantiateRequest(1, "Echo"), reply.bytes());
    EXPECT_NE(bytesToText(control_.handle("//importClasses\nSTR:" + path_ + "\n").parameter->bytes())
                  .find("//problem 1\nSTR:the settings for the classes of " + path_ +
                        ": line 5: class \"Echo\": the value \"-2147483648\" of \"instantiate.errorCode\" "
                        "does not fit"),
              std::string::npos);
}

TEST_F(ImportedClassesTest, ExchangesThatCannotBeRead_DescribeNothing) {
    const uint32_t session = recorded_.registerApplication();
    recorded_.add(instantiateRequest(session, "Echo"), toBytes("no block"));
    recorded_.addFailure(instantiateRequest(session, "Echo"));
    recorded_.send(callRequest(session, std::string(16, 'x'), "echo"));
    std::vector<std::string> problems;
    EXPECT_EQ(describeClasses(Recording(path_, problems)), "");
}

}  // namespace
}  // namespace merrowd::test
