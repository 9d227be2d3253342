// Tests the library's trace, which an environment variable enables.
#include <cstdlib>

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
    setenv("POS_TRACE", ("all:1,file=" + file).c_str(), 1);
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
