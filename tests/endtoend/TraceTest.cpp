// Tests the library's trace, which an environment variable enables.
#include <cstdlib>
#include <regex>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/TraceLines.h"

namespace dovrel::test {
namespace {

class Traced : public EndToEnd {
  protected:
    ~Traced() override { unsetenv("POS_TRACE"); }

    /// Registers, has "a secret" echoed, calls a method that does not exist, and ends. Returns the trace.
    std::string traceSession(const std::string& areas) {
        const std::string file = root_.path() + "/trace";
        setenv("POS_TRACE", (areas + ",file=" + file).c_str(), 1);
        library_.InitializePOS();
        const uint32_t application = host_.registered({"Echo"});
        ObjectId echo = host_.instantiate(application, "Echo");
        EXPECT_EQ(host_.call(application, echo, "echo", "a secret").bytes, "a secret");
        EXPECT_EQ(host_.call(application, echo, "nonsense").status, POS_FAILURE);
        library_.TerminatePOS();
        return readFile(file);
    }
};

/// Expects lines with these beginnings in this order. Other lines may come between them.
void expectInOrder(const std::vector<std::string>& lines, const std::vector<std::string>& beginnings) {
    size_t line = 0;
    for (const std::string& beginning : beginnings) {
        while (line < lines.size() && lines[line].compare(0, beginning.size(), beginning) != 0)
            ++line;
        ASSERT_LT(line, lines.size()) << beginning;
    }
}

/// Returns the time of day at the beginning of the first line that contains `text`.
std::string timeOfLine(const std::string& lines, const std::string& text) {
    const size_t at = lines.find(text);
    EXPECT_NE(at, std::string::npos) << text << "\n" << lines;
    const size_t begin = lines.rfind('\n', at) + 1;
    return lines.substr(begin, sizeof "2026-11-15 18:19:00.123" - 1);
}

TEST_F(Traced, All_RecordsTheConnectionAndEveryExchangeButNoContent) {
    Console console;
    const std::string trace = traceSession("all");
    console.stop();
    EXPECT_EQ(console.output(), "");
    EXPECT_EQ(console.systemLog().find("dovrel "), std::string::npos);
    EXPECT_EQ(trace.find("secret"), std::string::npos);
    expectInOrder(
        splitTraceLines(trace),
        {"connection: find the server application: result 0", "connection: launch the server: result 0",
         "connection: wake the server: result 0", "connection: connect: ",
         "exchange: query interface version, ", "exchange: query interface version: answered, ",
         "exchange: register application: answered, ", "exchange: instantiate object: answered, ",
         "exchange: call method: answered, ", "exchange: call method: error 27 (method not found), ",
         "session: failure of type 27 (method not found), error of the server: 27 (method not found)",
         "exchange: unregister application: answered, "});
}

TEST_F(Traced, OperationsOfAnApplicationThatIsNotRegistered_AreEntriesBecauseNothingElseTellsThem) {
    Console console;
    const std::string file = root_.path() + "/trace";
    setenv("POS_TRACE", ("all:1,calls:0,file=" + file).c_str(), 1);
    library_.InitializePOS();
    EXPECT_EQ(host_.command(4711, "ping").status, POS_FAILURE);
    EXPECT_EQ(library_.posUnregisterApplication(0xFFFFFFFF), POS_FAILURE);
    library_.TerminatePOS();
    EXPECT_EQ(splitTraceLines(readFile(file)),
              (std::vector<std::string>{"session: no application is registered as 4711",
                                        "session: no application is registered as 4294967295"}));
}

TEST_F(Traced, Level3_ShowsWhatIsSaidInReadableForm) {
    Console console;
    const std::string trace = traceSession("exchange:3");
    EXPECT_NE(trace.find("\n    > 107 method name = \"echo\"\n"), std::string::npos);
    EXPECT_NE(trace.find("\n    < 111 result data = 8 bytes: 61 20 73 65 63 72 65 74 \"a secret\"\n"),
              std::string::npos);
}

TEST_F(Traced, Calls_AreTheFunctionsInTheirOrderWithTheirSizesAndResults) {
    Console console;
    const std::string trace = traceSession("calls");
    console.stop();
    EXPECT_EQ(trace.find("secret"), std::string::npos);
    EXPECT_EQ(trace.find("Echo"), std::string::npos);
    const std::string numbers =
        std::regex_replace(trace, std::regex("(application|thread) [0-9A-F]+"), "$1 N");
    const std::string entries = std::regex_replace(numbers, std::regex("dovrel .* us calls: |[0-9]+ us"), "");
    EXPECT_EQ(
        entries,
        "InitializePOS, thread N: POS_OK, \n"
        "posRegisterApplicationWithClasses, classes 1, options 0 bytes, thread N: called\n"
        "posRegisterApplicationWithClasses, classes 1, options 0 bytes, thread N: POS_OK, application N, \n"
        "posInstantiateObject, application N, thread N: called\n"
        "posInstantiateObject, application N, thread N: POS_OK, \n"
        "posCallMethod, application N, parameters 8 bytes, thread N: called\n"
        "posCallMethod, application N, parameters 8 bytes, thread N: POS_OK, result 8 bytes, \n"
        "posDeleteDLLHeapData, thread N: called\n"
        "posDeleteDLLHeapData, thread N: POS_OK, \n"
        "posCallMethod, application N, parameters 0 bytes, thread N: called\n"
        "posCallMethod, application N, parameters 0 bytes, thread N: POS_FAILURE, \n"
        "posDeleteDLLHeapData, thread N: called\n"
        "posDeleteDLLHeapData, thread N: POS_OK, \n"
        "TerminatePOS, thread N: called\n");
}

TEST_F(Traced, CallsLevel3_ShowsContentsOfCallsThatSucceed) {
    Console console;
    const std::string trace = traceSession("calls:3");
    console.stop();
    EXPECT_NE(trace.find("\n    > class = 16 bytes: 45 63 68 6F "), std::string::npos) << trace;
    EXPECT_NE(
        trace.find(
            "\n    > method = \"echo\"\n    > parameters = 8 bytes: 61 20 73 65 63 72 65 74 \"a secret\"\n"
            "    < result = 8 bytes: 61 20 73 65 63 72 65 74 \"a secret\"\n"),
        std::string::npos)
        << trace;
    EXPECT_EQ(trace.find("nonsense"), std::string::npos) << trace;
}

TEST_F(Traced, CallOfAnApplicationThatIsNotRegistered_DoesNotReadTheHostsPointers) {
    Console console;
    setenv("POS_TRACE", ("calls:3,file=" + root_.path() + "/trace").c_str(), 1);
    library_.InitializePOS();
    void** const invalid = reinterpret_cast<void**>(8);
    uint8_t* const invalidBytes = reinterpret_cast<uint8_t*>(8);
    uint8_t* result = nullptr;
    uint32_t length = 0;
    EXPECT_EQ(library_.posCallMethodOnExecuter(4711, invalid, invalid, reinterpret_cast<const char*>(8),
                                               invalidBytes, 5, &result, &length),
              POS_FAILURE);
    library_.TerminatePOS();
    EXPECT_NE(readFile(root_.path() + "/trace").find("parameters 5 bytes"), std::string::npos);
}

TEST_F(Traced, TimeOfDay_LiesBetweenTheTimesInTheServersLog) {
    Console console;
    root_.configure(setting("log", 1));
    const std::string trace = traceSession("exchange,time");
    console.stop();
    const std::string log = root_.serverLog();
    const std::string sent = timeOfLine(trace, "exchange: call method, ");
    const std::string received = timeOfLine(log, "call method, from process");
    const std::string answered = timeOfLine(trace, "exchange: call method: answered");
    EXPECT_LE(sent, received);
    EXPECT_LE(received, answered);
}

TEST_F(Traced, WithoutTheVariable_MakesNoFileAndSaysNothing) {
    Console console;
    traceSession("exchange:0");
    unsetenv("POS_TRACE");
    library_.InitializePOS();
    host_.registered();
    library_.TerminatePOS();
    console.stop();
    EXPECT_EQ(readFile(root_.path() + "/trace"), "");
    EXPECT_EQ(console.systemLog().find("exchange: "), std::string::npos);
}

}  // namespace
}  // namespace dovrel::test
