#include "server/ImportedClasses.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "server/ControlCalls.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/RecordedHost.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;
using Names = std::vector<std::string>;

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

    static CPPByteArray makeResultReply(const std::string& result) {
        dovrel::POSTransferObj reply(1, 11, 14);
        reply.writeString(posField::kResult, result);
        reply.writeString(posField::kServerMessage, "");
        return reply.bytes();
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

TEST_F(ImportedClassesTest, CreationThatFailedOnce_FailsOnce) {
    const uint32_t session = recorded_.registerApplication();
    dovrel::POSTransferObj refusal(1, 20, 12);
    refusal.writeString(posField::kExceptionText, "Not yet.");
    refusal.writeUInt32(posField::kExceptionCode, 26);
    recorded_.add(instantiateRequest(session, "Echo"), refusal.bytes());
    const std::string echo = recorded_.instantiate(session, "Echo");
    recorded_.send(callRequest(session, echo, "echo", "hello"));
    import();
    EXPECT_EQ(send(instantiateRequest(session_, "Echo")).code(), 26u);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(call(instantiate("Echo"), "echo", "hello").data(posField::kResult), "hello");
}

TEST_F(ImportedClassesTest, NamesOfMethods_CanHaveAnyBytesThatSettingsCanContain) {
    const uint32_t session = recorded_.registerApplication();
    const std::string echo = recorded_.instantiate(session, "Echo");
    for (const char* name : {"\xC3\xB6"
                             "ffne",
                             "\x9A"
                             "ffne",
                             "open it"})
        recorded_.add(callRequest(session, echo, name), makeResultReply(name));
    import();
    const std::string object = instantiate("Echo");
    for (const char* name : {"\xC3\xB6"
                             "ffne",
                             "\x9A"
                             "ffne",
                             "open it"})
        EXPECT_EQ(call(object, name, "").data(posField::kResult), name);
}

TEST_F(ImportedClassesTest, NamesThatSettingsCannotContain_AreProblems) {
    const uint32_t session = recorded_.registerApplication();
    const std::string echo = recorded_.instantiate(session, "Echo");
    for (const char* name : {"a,b", "a,b", "a\nb", " a", "a\x7F", "", "instantiate", "echo"})
        recorded_.send(callRequest(session, echo, name, "x"));
    Names problems;
    const std::string text = describeClasses(Recording(path_, problems), problems);
    const auto problem = [this](const std::string& name) {
        return path_ + ": settings cannot contain the name of the method " + name +
               " of the class \"Echo\"; its calls are left out";
    };
    EXPECT_EQ(problems, (Names{problem("\"\""), problem("\" a\""), problem("\"a\\x0Ab\""), problem("\"a,b\""),
                               problem("\"a\\x7F\""), problem("\"instantiate\"")}));
    EXPECT_NE(text.find("//methods\nSTR:echo\n"), std::string::npos);
    EXPECT_NE(bytesToText(control_.handle("//importClasses\nSTR:" + path_ + "\n").parameter->bytes())
                  .find("//problem 1\nSTR:" + problem("\"\"") + "\n"),
              std::string::npos);
}

TEST_F(ImportedClassesTest, DifferentArguments_StayInTheOrderOfTheirFirstCalls) {
    const uint32_t session = recorded_.registerApplication();
    const std::string echo = recorded_.instantiate(session, "Echo");
    for (const char* argument : {"c", "a", "c", "b", "a"})
        recorded_.send(callRequest(session, echo, "echo", argument));
    Names problems;
    const std::string text = describeClasses(Recording(path_, problems), problems);
    size_t place = 0;
    for (const std::string argument :
         {"case1.argument\nSTR:c", "case2.argument\nSTR:a", "case3.argument\nSTR:b"}) {
        place = text.find(argument, place);
        EXPECT_NE(place, std::string::npos) << argument;
    }
    EXPECT_EQ(text.find("case4"), std::string::npos);
}

TEST_F(ImportedClassesTest, LargePayloadsOfOtherCommands_AreNotRead) {
    const uint32_t session = recorded_.registerApplication();
    recorded_.instantiate(session, "Echo");
    recorded_.add(commandRequest(session, "ping"), toBytes(std::string(5000, 'x')));
    Names problems;
    const Recording recording(path_, problems);
    std::remove((path_ + ".payloads").c_str());
    EXPECT_EQ(describeClasses(recording, problems),
              "//CLASS\nSTR:Echo\n//identifier\nBAR:4563686F000000000000000000000000\n");
    EXPECT_EQ(problems, Names());
}

TEST_F(ImportedClassesTest, DescribeClasses_IsASettingsTextThatPeopleCanEdit) {
    const uint32_t session = recorded_.registerApplication();
    const std::string echo = recorded_.instantiate(session, "Echo");
    recorded_.send(callRequest(session, echo, "echo", "hello"));
    recorded_.send(callRequest(session, echo, "echo", "\x01"));
    Names problems;
    EXPECT_EQ(describeClasses(Recording(path_, problems), problems),
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
    const std::string counter = recorded_.instantiate(session, "Counter");
    recorded_.add(callRequest(session, counter, "value"), toBytes("no block"));
    Names problems;
    EXPECT_EQ(describeClasses(Recording(path_, problems), problems),
              "//CLASS\nSTR:Counter\n//identifier\nBAR:436F756E746572000000000000000000\n");
}

}  // namespace
}  // namespace merrowd::test
