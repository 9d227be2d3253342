// Tests the entries about failures in the error log and in the trace, which say more than the alerts.
#include <cstdlib>
#include <functional>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/TraceLines.h"

namespace dovrel::test {
namespace {

class FailureRecord : public EndToEnd {
  protected:
    ~FailureRecord() override { unsetenv("POS_TRACE"); }

    /// Runs a session in which only `operation` fails, without a display for alerts.
    void runSession(const std::function<void(Host&)>& operation) {
        setenv("POS_TRACE", ("all:1,file=" + root_.path() + "/trace").c_str(), 1);
        Console console;
        library_.InitializePOS();
        operation(host_);
        library_.TerminatePOS();
        console.stop();
        alerts_ = alerts(console);
        entry_ = readFile(root_.path() + "/Library/Logs/Tessilor/POSDLLErrorLog.txt");
        EXPECT_EQ(countOccurrences(entry_, "//TIME\n"), 1u) << entry_;
        entry_ = entry_.substr(std::min(entry_.find("//TIME\n"), entry_.size()));
        trace_ = splitTraceEntries(readFile(root_.path() + "/trace"));
    }

    static void registerInVain(Host& host) {
        uint32_t application = 0;
        EXPECT_EQ(host.registerApplication(application), POS_FAILURE);
    }

    /// Returns an operation that makes a call fail by this misbehaviour of the server.
    static std::function<void(Host&)> callUnder(const std::string& fault) {
        return [fault](Host& host) {
            const uint32_t application = host.registered({"Echo"});
            ObjectId echo = host.instantiate(application, "Echo");
            ServerControl::send(fault);
            EXPECT_EQ(host.call(application, echo, "echo", "a secret").status, POS_FAILURE);
        };
    }

    void expectEntry(const std::string& key, const std::string& line) const {
        EXPECT_NE(entry_.find("//" + key + "\n" + line + "\n"), std::string::npos) << entry_;
    }
    void expectNoEntry(const std::string& key) const {
        EXPECT_EQ(entry_.find("//" + key + "\n"), std::string::npos) << entry_;
    }
    void expectStep(const std::string& area, const std::string& step) const {
        expectEntry("FAILEDSTEP", "STR:" + step);
        expectTrace(area + ": " + step);
        expectTrace("session: failure of type ", ", last failed step: " + step);
    }
    /// Expects a trace entry that begins with `beginning` and contains `part`.
    void expectTrace(const std::string& beginning, const std::string& part = "") const {
        for (const std::string& entry : trace_)
            if (entry.compare(0, beginning.size(), beginning) == 0 && entry.find(part) != std::string::npos)
                return;
        ADD_FAILURE() << beginning << "..." << part << "\n" << readFile(root_.path() + "/trace");
    }

    size_t alerts_ = 0;
    std::string entry_;
    std::vector<std::string> trace_;
};

TEST_F(FailureRecord, OfAServerThatIsMissing_NamesThePlaceWhereItWasLookedFor) {
    root_.removeServer();
    runSession(registerInVain);
    expectStep("connection", "find the server application: result 42 (nothing at " + root_.server() + ")");
    expectEntry("APPLICATION", "STR:End to end");
    expectEntry("TYPE", "INT:23");
    EXPECT_EQ(alerts_, 1u);
}

TEST_F(FailureRecord, OfAServerThatCannotBeExecuted_NamesTheStatusOfTheLaunch) {
    root_.makeServerUnexecutable();
    runSession(registerInVain);
    expectStep("connection", "launch the server: result -10826 (kLSNoLaunchPermissionErr)");
    EXPECT_EQ(alerts_, 1u);
}

TEST_F(FailureRecord, OfAServerOfAnotherVersion_NamesBothVersions) {
    root_.configure(setting("interfaceVersion", 8));
    runSession(registerInVain);
    expectStep("exchange", "interface version: the server has 8, the library needs 7");
    expectNoEntry("SERVERERROR");
    EXPECT_EQ(alerts_, 1u);
}

TEST_F(FailureRecord, OfAClassThatDoesNotExist_NamesTheClass) {
    runSession([](Host& host) {
        EXPECT_FALSE(host.instantiate(host.registered({"Nothing"}), "Nothing").isThere());
    });
    expectEntry("TYPENAME", "STR:class or driver not found");
    expectEntry("SERVERERROR", "STR:24 (class or driver not found)");
    EXPECT_NE(entry_.find("//REQUEST\nSTR:instantiate object, class identifier = "), std::string::npos)
        << entry_;
    EXPECT_NE(entry_.find("\"Nothing.........\"\n"), std::string::npos) << entry_;
    expectTrace("exchange: instantiate object: error 24 (class or driver not found), ");
    expectTrace("session: failure of type 24 (class or driver not found), error of the server: 24 ");
    EXPECT_EQ(alerts_, 1u);
}

TEST_F(FailureRecord, OfARefusedRegistration_IsThereEvenIfTheHostWantsNoAlert) {
    root_.configure(refusal("register application", 32, "no room"));
    runSession([](Host& host) {
        uint32_t application = 0;
        EXPECT_EQ(host.registerApplication(application, {}, {POS_OPTION_SILENT_REGISTRATION}), POS_FAILURE);
    });
    expectEntry("MESSAGE", "STR:no room");
    expectEntry("ALERT", "STR:none");
    expectTrace("session: failure of type 32 (registration refused), error of the server: 32 ", ", no alert");
    EXPECT_EQ(alerts_, 0u);
}

TEST_F(FailureRecord, OfErrorCode36_IsThereThoughNoAlertShowsIt) {
    runSession(callUnder(refusal("call method", 36, "no library", 1)));
    expectEntry("TYPE", "INT:36");
    expectEntry("MESSAGE", "STR:no library");
    expectEntry("REQUEST", "STR:call method, method name = \"echo\"");
    expectEntry("SERVERERROR", "STR:36 (library not found)");
    expectEntry("ALERT", "STR:none");
    expectTrace("exchange: call method: error 36 (library not found), ");
    expectTrace("session: failure of type 36 (library not found), error of the server: 36 ", ", no alert");
    EXPECT_EQ(alerts_, 0u);
}

TEST_F(FailureRecord, OfAnUnknownErrorCode_IsThereThoughNoAlertShowsIt) {
    runSession(callUnder(refusal("call method", 99, "no idea", 1)));
    expectEntry("MESSAGE", "STR:no idea");
    expectEntry("SERVERERROR", "STR:99 (unknown)");
    expectEntry("ALERT", "STR:none");
    expectTrace("exchange: call method: error 99 (unknown), ");
    expectTrace("session: failure of type 23 ", "error of the server: 99 (unknown), no alert");
    EXPECT_EQ(alerts_, 0u);
}

TEST_F(FailureRecord, OfAnEventThatFailed_NamesTheStatus) {
    runSession(callUnder(misbehaviour("failedEvent", "call method", 1) + setting("eventStatus", -1708)));
    expectStep("exchange", "call method: attempt 1: result -1708 (errAEEventNotHandled)");
    EXPECT_EQ(alerts_, 1u);
}

TEST_F(FailureRecord, OfAReplyThatCannotBeRead_NamesTheErrorSite) {
    runSession(callUnder(misbehaviour("garbage", "call method", 1)));
    expectEntry("TYPENAME", "STR:bytes that are not a structured block");
    expectEntry("MESSAGE", "STR:1");
    expectEntry("DETAIL", "STR:384190CE01EA: ");
    expectTrace("session: failure of type 2 ", ", detail \"384190CE01EA: \", message: 1");
}

TEST_F(FailureRecord, OfAServerThatIsGoneInEveryAttempt_NamesTheLastOne) {
    root_.configure(misbehaviour("vanishBefore", "get information"));
    runSession([](Host& host) { EXPECT_EQ(host.information(host.registered(), "?").status, POS_FAILURE); });
    expectEntry("MESSAGE", "STR:1");
    expectStep("exchange", "get information: attempt 20: result -609 (connectionInvalid)");
}

TEST_F(FailureRecord, OfAnyCall_HoldsNothingThatWasPassedToTheMethod) {
    runSession(callUnder(refusal("call method", 28, "a text", 1)));
    EXPECT_EQ(entry_.find("secret"), std::string::npos) << entry_;
    const std::string trace = readFile(root_.path() + "/trace");
    for (const char* said : {"secret", "a text", "\"echo\"", "End to end"})
        EXPECT_EQ(trace.find(said), std::string::npos) << trace;
}

}  // namespace
}  // namespace dovrel::test
