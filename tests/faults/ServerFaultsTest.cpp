// Every misbehaviour of the server in every command, and replies that are cut at every byte.
#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "tests/faults/Commands.h"
#include "tests/faults/FaultedHost.h"
#include "tests/faults/SampleSize.h"
#include "tests/support/ServerControl.h"
#include "tests/support/ServerSettings.h"
#include "tests/support/TestRoot.h"

namespace dovrel::test {
namespace {

class ServerFaults : public testing::TestWithParam<Command> {
  protected:
    // The misbehaviour concerns the next exchange of the command only. Returns whether the call succeeded.
    bool succeedsWith(const std::string& settings, const Command& command) {
        testing::internal::CaptureStderr();  // the alerts
        EXPECT_TRUE(host_.settle());
        ServerControl::send(settings + setting("misbehaveCommand", command.name) +
                            setting("misbehaveTimes", 1));
        (host_.*command.call)();
        testing::internal::GetCapturedStderr();
        const bool hasSucceeded = host_.hasSucceeded();
        EXPECT_EQ(host_.takeProblem(), "");
        return hasSucceeded;
    }

    void expectFailureAndRecovery(const std::string& settings, const Command& command) {
        EXPECT_FALSE(succeedsWith(settings, command));
        expectRecovery();
    }

    void expectRecovery() {
        testing::internal::CaptureStderr();
        EXPECT_TRUE(host_.settle());
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(root_.servers().size(), 1u);
    }

    TestRoot root_;
    FaultedHost host_{root_.library()};
};

TEST_P(ServerFaults, AnswerThatIsUseless_IsAFailureAndTheNextCallSucceeds) {
    for (const char* const fault : {"garbage", "empty", "noParameter", "failedEvent"}) {
        SCOPED_TRACE(fault);
        expectFailureAndRecovery(setting("misbehave", fault), GetParam());
    }
}

TEST_P(ServerFaults, ServerThatVanishes_IsReplacedByOneThatServes) {
    for (const char* const fault : {"vanishBefore", "vanishDuring", "vanishAfter"}) {
        SCOPED_TRACE(fault);
        succeedsWith(setting("misbehave", fault), GetParam());
        expectRecovery();
    }
}

TEST_P(ServerFaults, AnswerThatIsLateOrHasAMessage_IsASuccess) {
    EXPECT_TRUE(succeedsWith(setting("misbehave", "late") + setting("delay", 50), GetParam()));
    EXPECT_TRUE(succeedsWith(setting("misbehave", "message") + setting("messageText", "News."), GetParam()));
    expectRecovery();
}

// At every byte if all faults are tried, otherwise at some.
TEST_P(ServerFaults, AnswerCutAtAnyByte_IsAFailureAndTheNextCallSucceeds) {
    constexpr int kShortest = 20;
    constexpr int kStepOfSample = 9;
    const int step = sampleSize() == 0 ? 1 : kStepOfSample;
    int bytes = 0;
    while (!succeedsWith(setting("misbehave", "cut") + setting("cutTo", bytes), GetParam()) && !HasFailure())
        bytes += step;
    EXPECT_GT(bytes, kShortest) << "the whole answer is longer";
    std::cout << GetParam() << ": " << bytes / step << " cut answers" << std::endl;
    expectRecovery();
}

INSTANTIATE_TEST_SUITE_P(Each, ServerFaults, testing::ValuesIn(kCommands),
                         [](const auto& each) { return toTestName(each.param); });

}  // namespace
}  // namespace dovrel::test
