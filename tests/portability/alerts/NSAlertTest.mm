// Contract tests of alerts, with a helper that follows the test's commands.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <future>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/VariableChange.h"
#include "tests/support/FakeAlertHelper.h"

using namespace dovrel::test;

// Records presses of the Help button.
@interface HelpWitness : NSObject {
   @public
    int presses;
    BOOL raises;
}
- (BOOL)alertShowHelp:(NSAlert*)alert;
@end

@implementation HelpWitness

- (BOOL)alertShowHelp:(NSAlert*)alert {
    static_cast<void>(alert);
    ++presses;
    if (raises) [NSException raise:NSGenericException format:@"No help."];
    return YES;
}

@end

namespace {

constexpr NSInteger kRaised = -1;

// A separate function, because a function with @try must not contain C++ objects.
NSInteger runAlert(NSAlert* alert) {
    NSInteger returned = kRaised;
    @try {
        returned = [alert runModal];
    } @catch (...) {
        returned = kRaised;
    }
    return returned;
}

class NSAlertTest : public testing::Test {
   protected:
    ~NSAlertTest() override { [pool_ release]; }

    static NSAlert* alertWith(const std::vector<const char*>& captions, const char* title = "T",
                              const char* body = "B") {
        NSAlert* const alert = [[[NSAlert alloc] init] autorelease];
        for (const char* caption : captions)
            [alert addButtonWithTitle:[NSString stringWithUTF8String:caption]];
        [alert setMessageText:[NSString stringWithUTF8String:title]];
        [alert setInformativeText:[NSString stringWithUTF8String:body]];
        [alert setAlertStyle:0];
        return alert;
    }

    nlohmann::json request() const { return nlohmann::json::parse(helper_.note("request")); }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    // DISPLAY only needs a value, because the helper of these tests opens no window.
    VariableChange display_{"DISPLAY", ":1"};
    VariableChange alerts_{"POS_ALERTS", nullptr};
    FakeAlertHelper helper_;
};

std::vector<std::string> openDescriptors() {
    std::vector<std::string> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        descriptors.push_back(entry.path().filename());
    return descriptors;
}

bool hasChild() { return waitpid(-1, nullptr, WNOHANG | __WALL) >= 0 || errno != ECHILD; }

}  // namespace

TEST_F(NSAlertTest, RunModal_SendsTextsCaptionsAndTheHostsProcess) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    runAlert(alertWith({"Größe", "Nein"}, "Titel “1”", "Zeile\nZeile 2"));
    EXPECT_EQ(request(), nlohmann::json::parse(R"({"version":1,"title":"Titel “1”","body":"Zeile\nZeile 2",
                                                   "buttons":["Größe","Nein"],"help":false,"host":)" +
                                               std::to_string(getpid()) + "}"));
}

TEST_F(NSAlertTest, RunModal_TheHelperInheritsNothingButItsEndOfTheStream) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    runAlert(alertWith({"OK"}));
    EXPECT_EQ(helper_.note("descriptors"), "0 1 2 3");
}

TEST_F(NSAlertTest, RunModal_TheFirstButtonIs1000AndTheNextOnesFollow) {
    for (int button = 0; button < 3; ++button) {
        helper_.follow({kShownEvent, pressedEvent(button)});
        EXPECT_EQ(runAlert(alertWith({"1", "2", "3"})), 1000 + button);
    }
}

TEST_F(NSAlertTest, RunModal_CanBeRunAgain) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    NSAlert* const alert = alertWith({"OK"});
    EXPECT_EQ(runAlert(alert), 1000);
    EXPECT_EQ(runAlert(alert), 1000);
}

TEST_F(NSAlertTest, RunModal_WithoutButtonsThereIsOne) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    EXPECT_EQ(runAlert(alertWith({})), 1000);
    EXPECT_EQ(request()["buttons"], nlohmann::json({"OK"}));
}

TEST_F(NSAlertTest, RunModal_EmptyTextsAreSent) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    EXPECT_EQ(runAlert(alertWith({""}, "", "")), 1000);
    EXPECT_EQ(request()["title"], "");
    EXPECT_EQ(request()["body"], "");
}

TEST_F(NSAlertTest, RunModal_ABodyThatDoesNotFitIsCut) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    const std::string body(size_t{3} << 20, 'x');
    EXPECT_EQ(runAlert(alertWith({"OK"}, "T", body.c_str())), 1000);
    const std::string sent = request()["body"];
    EXPECT_LT(sent.size(), size_t{1} << 20);
    EXPECT_EQ(sent.substr(sent.size() - 5), "x …");
}

TEST_F(NSAlertTest, RunModal_OnAnyThread) {
    helper_.follow({kShownEvent, pressedEvent(1)});
    NSAlert* const alert = alertWith({"1", "2"});
    EXPECT_EQ(std::async(std::launch::async, runAlert, alert).get(), 1001);
}

TEST_F(NSAlertTest, RunModal_SeveralThreadsAtATimeEachGetTheirAnswer) {
    helper_.follow({kShownEvent, pressedEvent(1)});
    NSAlert* const alert = alertWith({"1", "2"});
    std::vector<std::future<NSInteger>> answers;
    for (int thread = 0; thread < 4; ++thread)
        answers.push_back(std::async(std::launch::async, runAlert, alert));
    for (auto& answer : answers) EXPECT_EQ(answer.get(), 1001);
}

TEST_F(NSAlertTest, RunModal_LeavesNoDescriptorAndNoChild) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    runAlert(alertWith({"OK"}));
    const auto before = openDescriptors();
    for (int alert = 0; alert < 3; ++alert) runAlert(alertWith({"OK"}));
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChild());
}

TEST_F(NSAlertTest, RunModal_ASignalDoesNotEndIt) {
    struct sigaction interrupt = {};
    struct sigaction before = {};
    interrupt.sa_handler = [](int) {};
    sigaction(SIGUSR1, &interrupt, &before);
    helper_.follow({kShownEvent, "wait"});
    NSAlert* const alert = alertWith({"OK"});
    const pthread_t runner = pthread_self();
    auto interrupter = std::async(std::launch::async, [&] {
        const pid_t helper = helper_.process();
        for (int signal = 0; signal < 100; ++signal) {
            pthread_kill(runner, SIGUSR1);
            usleep(1000);
        }
        EXPECT_EQ(kill(helper, 0), 0) << "the alert has been ended by a signal";
        kill(helper, SIGKILL);
    });
    EXPECT_EQ(runAlert(alert), kRaised);
    interrupter.get();
    sigaction(SIGUSR1, &before, nullptr);
}

// The Help button.

TEST_F(NSAlertTest, Help_IsAskedForInTheRequest) {
    helper_.follow({kShownEvent, pressedEvent(0)});
    NSAlert* const alert = alertWith({"OK"});
    [alert setShowsHelp:YES];
    runAlert(alert);
    EXPECT_EQ(request()["help"], true);
}

TEST_F(NSAlertTest, Help_EachPressIsTheDelegatesAndTheAlertStays) {
    helper_.follow({kShownEvent, kHelpEvent, kHelpEvent, pressedEvent(0)});
    HelpWitness* const witness = [[[HelpWitness alloc] init] autorelease];
    NSAlert* const alert = alertWith({"OK"});
    [alert setDelegate:witness];
    [alert setShowsHelp:YES];
    EXPECT_EQ(runAlert(alert), 1000);
    EXPECT_EQ(witness->presses, 2);
}

TEST_F(NSAlertTest, Help_ADelegateThatRaisesDoesNotEndTheAlert) {
    helper_.follow({kShownEvent, kHelpEvent, kHelpEvent, pressedEvent(0)});
    HelpWitness* const witness = [[[HelpWitness alloc] init] autorelease];
    witness->raises = YES;
    NSAlert* const alert = alertWith({"OK"});
    [alert setDelegate:witness];
    EXPECT_EQ(runAlert(alert), 1000);
    EXPECT_EQ(witness->presses, 2);
}

TEST_F(NSAlertTest, Help_WithoutADelegateOrWithOneThatCannotHelpDoesNothing) {
    helper_.follow({kShownEvent, kHelpEvent, pressedEvent(0)});
    NSAlert* const alert = alertWith({"OK"});
    EXPECT_EQ(runAlert(alert), 1000);
    [alert setDelegate:@"no helper"];
    EXPECT_EQ(runAlert(alert), 1000);
}

// Helpers that fail.

TEST_F(NSAlertTest, AHelperThatEndsWithoutAnAnswer_RaisesAnException) {
    for (const std::vector<std::string>& commands : std::vector<std::vector<std::string>>{
             {}, {"crash"}, {kShownEvent}, {kShownEvent, "crash"}, {kShownEvent, kHelpEvent, "crash"}}) {
        helper_.follow(commands);
        EXPECT_EQ(runAlert(alertWith({"OK"})), kRaised) << testing::PrintToString(commands);
    }
}

TEST_F(NSAlertTest, AHelperThatEndsBeforeItHasReadTheRequest_RaisesAnException) {
    helper_.follow({});
    FakeAlertHelper::beDeaf();
    const std::string body(size_t{1} << 20, '\x01');
    EXPECT_EQ(runAlert(alertWith({"OK"}, "T", body.c_str())), kRaised);
}

TEST_F(NSAlertTest, AHelperThatIsKilledWhileTheAlertIsOpen_RaisesAnException) {
    helper_.follow({kShownEvent, "wait"});
    auto killer = std::async(std::launch::async, [this] { kill(helper_.process(), SIGKILL); });
    EXPECT_EQ(runAlert(alertWith({"OK"})), kRaised);
    killer.get();
}

TEST_F(NSAlertTest, AHelperThatDoesNotSendEvents_RaisesAnExceptionAndClosesTheStream) {
    for (const char* command :
         {"send nonsense", "send {\"event\":\"gone\"}", "send {\"event\":\"pressed\",\"button\":2}",
          "send {\"event\":\"pressed\",\"button\":-1}", "send {\"event\":\"pressed\"}", "send "}) {
        helper_.follow({kShownEvent, command, "wait"});
        EXPECT_EQ(runAlert(alertWith({"1", "2"})), kRaised) << command;
        EXPECT_TRUE(helper_.sawItsEnd()) << command;
    }
}

TEST_F(NSAlertTest, AnAnswerThatIsCutOff_RaisesAnException) {
    helper_.follow({kShownEvent, "raw {\"event\":\"pressed\",\"button\":0}"});
    EXPECT_EQ(runAlert(alertWith({"1", "2"})), kRaised);
}

TEST_F(NSAlertTest, AnEventThatNeverEnds_RaisesAnExceptionBeforeMemoryRunsOut) {
    helper_.follow({kShownEvent, "flood", "wait"});
    EXPECT_EQ(runAlert(alertWith({"1", "2"})), kRaised);
    EXPECT_TRUE(helper_.sawItsEnd());
}

TEST_F(NSAlertTest, EventsInPieces_AreReadAsOne) {
    helper_.follow(
        {"raw {\"event\":\"sho", "raw wn\"}", "send ", "raw {\"event\":\"pressed\",", "send \"button\":1}"});
    EXPECT_EQ(runAlert(alertWith({"1", "2"})), 1001);
}
