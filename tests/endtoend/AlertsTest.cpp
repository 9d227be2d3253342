// Tests what the user sees. There is no display here, so each alert becomes a line in the
// system log, and Retry is never chosen.
#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

constexpr char kUnrecoverable[] = "DLL_ERROR_UNRECOVERABLE_ERROR";

class Alerts : public InSession {
  protected:
    // Makes the server reply with that error to the next request of the command.
    static void failNext(const std::string& command, uint32_t code) {
        ServerControl::send(refusal(command, code, "The server says no.", 1));
    }

    static std::string refusedRegistration(int64_t times = 0) {
        return refusal("register application", 32, "No room.", times);
    }
};

TEST_F(Alerts, AnErrorAnswer_IsShownWithTheTextThatBelongsToItsCode) {
    const uint32_t application = host_.registered();
    const std::pair<uint32_t, const char*> explanations[] = {
        {0, kUnrecoverable},
        {23, kUnrecoverable},
        {24, "DLL_ERROR_POS_CLASS_OR_DRIVER_NOT_FOUND_EXCEPTION"},
        {25, kUnrecoverable},
        {26, "DLL_ERROR_POS_OBJECT_INSTANTIATION_EXCEPTION"},
        {27, kUnrecoverable},
        {28, kUnrecoverable},
        {30, kUnrecoverable},
        {33, kUnrecoverable},
        {34, kUnrecoverable},
        {43, kUnrecoverable},
        {145, kUnrecoverable},
        {146, kUnrecoverable}};
    for (const auto& explanation : explanations) {
        failNext("execute command", explanation.first);
        Console console;
        EXPECT_EQ(host_.command(application, "ping").status, POS_FAILURE);
        console.stop();
        EXPECT_EQ(countFailures(console, "The server says no.", explanation.second), 1u)
            << explanation.first << "\n"
            << console.systemLog();
        EXPECT_EQ(alerts(console), 1u);
    }
}

TEST_F(Alerts, AnErrorAnswerWithCode24_ShowsTheClassNotFoundTextAndFails) {
    const uint32_t application = host_.registered({"Nothing"});
    Console console;
    EXPECT_FALSE(host_.instantiate(application, "Nothing").isThere());
    console.stop();
    EXPECT_EQ(countFailures(console, "the server has no such class",
                            "DLL_ERROR_POS_CLASS_OR_DRIVER_NOT_FOUND_EXCEPTION"),
              1u);
}

TEST_F(Alerts, AnErrorAnswerWithCode3_ShowsTheInterfaceTextInPlaceOfTheServers) {
    const uint32_t application = host_.registered();
    failNext("execute command", 3);
    Console console;
    EXPECT_EQ(host_.command(application, "ping").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(
                  console, texts_.text("DLL_POS_TRANSFER_OBJECT_TRADER_POS_EXCEPTION_NO_VALID_POS_INTERFACE"),
                  kUnrecoverable),
              1u);
}

TEST_F(Alerts, AnErrorAnswerWithCode36OrOneThatIsNotListed_FailsWithoutAnAlertAndWithoutAResult) {
    const uint32_t application = host_.registered();
    for (const uint32_t code : {36u, 1u, 29u, 44u, 147u, 1000u}) {
        failNext("execute command", code);
        Console console;
        const Answered answered = host_.command(application, "ping", "pong");
        console.stop();
        EXPECT_EQ(answered.status, POS_FAILURE) << code;
        EXPECT_EQ(answered.bytes, "") << code;
        EXPECT_EQ(alerts(console), 0u) << code;
    }
}

TEST_F(Alerts, ARefusedRegistration_IsShownOnceWithItsOwnTextUnderTheGivenName) {
    root_.configure(refusedRegistration());
    uint32_t application = 4711;
    Console console;
    EXPECT_EQ(host_.registerApplication(application, {}, {}, "Refused"), POS_FAILURE);
    console.stop();
    EXPECT_EQ(countAlerts(console,
                          texts_.failureBody("Refused", "No room.", "DLL_ERROR_POS_REGISTRATION_EXCEPTION")),
              1u);
    EXPECT_EQ(alerts(console), 1u) << "an alert that is not answered Cancel is not asked twice";
    EXPECT_EQ(application, 4711u);
}

TEST_F(Alerts, ARefusedRegistrationWithOption1120_IsNotShown) {
    root_.configure(refusedRegistration());
    uint32_t application = 4711;
    Console console;
    EXPECT_EQ(host_.registerApplication(application, {}, {1120}), POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 0u);
    EXPECT_EQ(application, 4711u);
}

TEST_F(Alerts, ARegistrationThatFailsOtherwiseWithOption1120_IsStillShown) {
    root_.configure(refusal("register application", 23));
    uint32_t application = 0;
    Console console;
    EXPECT_EQ(host_.registerApplication(application, {}, {1120}), POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 1u);
}

TEST_F(Alerts, AfterARefusedRegistration_TheNextOneSucceeds) {
    root_.configure(refusedRegistration(1));
    uint32_t application = 0;
    EXPECT_EQ(host_.registerApplication(application), POS_FAILURE);
    EXPECT_EQ(host_.registerApplication(application), POS_OK);
    EXPECT_EQ(host_.command(application, "ping", "in").bytes, "in");
}

TEST_F(Alerts, AServerWithAnotherInterfaceVersion_IsRefusedAtRegistration) {
    root_.configure(setting("log", 1) + setting("interfaceVersion", 8));
    uint32_t application = 0;
    Console console;
    EXPECT_EQ(host_.registerApplication(application), POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(
                  console, texts_.text("DLL_POS_TRANSFER_OBJECT_TRADER_POS_EXCEPTION_NO_VALID_POS_INTERFACE"),
                  kUnrecoverable),
              1u);
    EXPECT_EQ(countInServerLog(" register application"), 0u);
}

const std::string kTalkingServer =
    setting("log", 1) + misbehaviour("message") + setting("messageText", "The lamp is getting old.");

TEST_F(Alerts, AMessageOfTheServer_IsShownAfterInstantiationAndCall) {
    root_.configure(kTalkingServer);
    const uint32_t application = host_.registered({"Echo"});
    Console console;
    ObjectId echo = host_.instantiate(application, "Echo");
    EXPECT_TRUE(echo.isThere());
    EXPECT_EQ(host_.call(application, echo, "echo", "hello").bytes, "hello");
    console.stop();
    EXPECT_EQ(countAlerts(console, "The lamp is getting old."), 2u) << console.systemLog();
    EXPECT_EQ(alerts(console), 2u);
}

TEST_F(Alerts, AMessageWithoutFlagsOrText_IsNotShown) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    for (const std::string& message :
         {setting("messageFlags", 0) + setting("messageText", "Hidden."), setting("messageText", "")}) {
        ServerControl::send(misbehaviour("message") + message);
        Console console;
        EXPECT_EQ(host_.call(application, echo, "echo", "hello").bytes, "hello");
        console.stop();
        EXPECT_EQ(alerts(console), 0u) << message;
    }
}

TEST_F(Alerts, AMessageForAnApplicationRegisteredWithOption1121_IsNotShown) {
    root_.configure(kTalkingServer);
    uint32_t silenced = 0;
    ASSERT_EQ(host_.registerApplication(silenced, {"Echo"}, {1121}), POS_OK);
    const uint32_t other = host_.registered({"Echo"});
    Console console;
    EXPECT_TRUE(host_.instantiate(silenced, "Echo").isThere());
    console.stop();
    EXPECT_EQ(alerts(console), 0u);
    Console otherConsole;
    EXPECT_TRUE(host_.instantiate(other, "Echo").isThere());
    otherConsole.stop();
    EXPECT_EQ(alerts(otherConsole), 1u) << "only that application is silenced";
}

TEST_F(Alerts, OptionsOfNoOneOrAnOddNumberOfBytes_AreIgnored) {
    root_.configure(kTalkingServer);
    uint16_t options[] = {1121, 1121};
    for (const uint32_t length : {0u, 1u, 3u}) {
        uint32_t application = 0;
        ASSERT_EQ(
            library_.posRegisterApplicationWithClasses("Odd", nullptr, 0, options, length, &application),
            POS_OK);
        Console console;
        EXPECT_TRUE(host_.instantiate(application, "Echo").isThere());
        console.stop();
        EXPECT_EQ(alerts(console), 1u) << length;
    }
    uint32_t application = 0;
    ASSERT_EQ(library_.posRegisterApplicationWithClasses("Even", nullptr, 0, options, 4, &application),
              POS_OK);
    Console console;
    EXPECT_TRUE(host_.instantiate(application, "Echo").isThere());
    console.stop();
    EXPECT_EQ(alerts(console), 0u);
}

TEST_F(Alerts, AFailedOperation_ShowsNoMessageOfTheServer) {
    root_.configure(setting("CLASS", "Scanner") + setting("methods", "scan") +
                    setting("scan.message", "Never seen.") + setting("scan.errorCode", 28) +
                    setting("scan.errorText", "Stuck."));
    const uint32_t application = host_.registered({"Scanner"});
    ObjectId scanner = host_.instantiate(application, "Scanner");
    Console console;
    EXPECT_EQ(host_.call(application, scanner, "scan").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(console, "Stuck.", kUnrecoverable), 1u);
    EXPECT_EQ(countOccurrences(console.systemLog(), "Never seen."), 0u);
}

}  // namespace
}  // namespace dovrel::test
