#include "portability/posix/AllSignalsBlock.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <thread>

#include "tests/support/SignalAction.h"

namespace {

volatile std::sig_atomic_t handled = 0;

}  // namespace

TEST(AllSignalsBlock, SignalForThisThread_WaitsUntilItsEnd) {
    handled = 0;
    const dovrel::test::SignalAction action(SIGUSR1, [](int) { handled = handled + 1; });
    {
        const portability::AllSignalsBlock block;
        raise(SIGUSR1);
        EXPECT_EQ(handled, 0);
    }
    EXPECT_EQ(handled, 1);
}

TEST(AllSignalsBlock, ThreadThatStartsMeanwhile_TakesNoSignalForEver) {
    std::unique_ptr<std::thread> thread;
    sigset_t mask;
    sigemptyset(&mask);
    {
        const portability::AllSignalsBlock block;
        thread = std::make_unique<std::thread>([&mask] { pthread_sigmask(SIG_SETMASK, nullptr, &mask); });
    }
    thread->join();
    EXPECT_EQ(sigismember(&mask, SIGTERM), 1);
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGTERM), 0);
}
