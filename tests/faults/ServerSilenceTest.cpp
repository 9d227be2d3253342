// A server that never answers, in each command. The clock is fast: the time-outs of minutes take seconds.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>

#include "tests/faults/Commands.h"
#include "tests/support/FastClock.h"
#include "tests/support/ServerControl.h"
#include "tests/support/ServerSettings.h"
#include "tests/support/TestRoot.h"

namespace dovrel::test {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

class ServerSilence : public testing::TestWithParam<Command> {
  protected:
    TestRoot root_;
    FaultedHost host_{root_.library()};
};

TEST_P(ServerSilence, Call_FailsAfterTenThousandTicksAndTheNextServerServes) {
    constexpr int kFaster = 50;
    constexpr seconds kTenThousandTicks{166};
    testing::internal::CaptureStderr();  // the alerts
    ASSERT_TRUE(host_.settle());
    ServerControl::send(misbehaviour("silent", GetParam().name, 1));
    {
        const FastClock clock(kFaster);
        const auto start = steady_clock::now();
        (host_.*GetParam().call)();
        EXPECT_GE(steady_clock::now() - start, kTenThousandTicks);
    }
    EXPECT_FALSE(host_.hasSucceeded());
    EXPECT_EQ(host_.takeProblem(), "");
    root_.endServers(SIGTERM);
    EXPECT_TRUE(host_.settle());
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(root_.servers().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Each, ServerSilence, testing::ValuesIn(kCommands),
                         [](const auto& each) { return toTestName(each.param); });

}  // namespace
}  // namespace dovrel::test
