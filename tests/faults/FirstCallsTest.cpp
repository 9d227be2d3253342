// Faults in the first calls of a process, which create everything that the library creates only once. Each
// fault has its own process.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/FaultSeries.h"
#include "tests/faults/FaultedHost.h"
#include "tests/support/FastClock.h"
#include "tests/support/TestRoot.h"

namespace dovrel::test {
namespace {

// Which of the first two calls has the fault.
struct FirstCall {
    const char* name;
    bool isSecond;
};

std::ostream& operator<<(std::ostream& stream, const FirstCall& call) {
    return stream << call.name;
}

enum Ending { kStruck, kNotStruck, kWrongOutputs, kSessionLost, kNewSessionFails };

class FirstCalls : public testing::TestWithParam<FirstCall> {
  protected:
    // The server runs before the first trial.
    void SetUp() override {
        EXPECT_EQ(inProcess([this] { return FaultedHost(root_.library()).settle() ? 0 : 1; }), 0);
    }

    template <typename Series>
    void run(Series series) {
        size_t tried = 0;
        const size_t possible =
            tryFaults(series(countCalls()), kSamples * sampleSize(), [&](const Fault& fault) {
                ++tried;
                const int ending = inProcess([&] { return tryFault(fault); });
                EXPECT_THAT(ending, testing::AnyOf(kStruck, kNotStruck)) << fault;
                return ending == kStruck;
            });
        std::cout << GetParam() << ": " << tried << " of about " << possible << " faults" << std::endl;
    }

  private:
    // Returns the exit status of a process that runs `body`, or the negative number of the signal that ended it.
    template <typename Body>
    static int inProcess(const Body& body) {
        constexpr unsigned kLongestLife = 60;  // seconds
        const pid_t child = fork();
        if (child == 0) {
            alarm(kLongestLife);
            const int nowhere = open("/dev/null", O_WRONLY);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            _exit(body());
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    void makeCall(FaultedHost& host, const std::function<void(const std::function<void()>&)>& hook) const {
        if (GetParam().isSecond) host.initialize();
        host.makeNextCallThrough(hook);
        GetParam().isSecond ? host.registerApplication() : host.initialize();
    }

    // In the process of the trial.
    int tryFault(const Fault& fault) const {
        FaultedHost host(root_.library());
        bool hasStruck = false;
        {
            const FastClock clock(kPace);
            makeCall(host, [&](const std::function<void()>& call) {
                const FaultInEffect effect(fault, hasStruck);
                call();
            });
        }
        if (!host.takeProblem().empty() || (!hasStruck && !host.hasSucceeded())) return kWrongOutputs;
        if (!host.settle()) return kSessionLost;
        host.leave();
        if (!host.settle()) return kNewSessionFails;
        return hasStruck ? kStruck : kNotStruck;
    }

    // The counts come from another process, through a pipe.
    std::map<std::string, size_t> countCalls() const {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const int ending = inProcess([&] {
            FaultedHost host(root_.library());
            makeCall(host, [](const std::function<void()>& call) {
                const CallCounter counter;
                call();
            });
            std::string text;
            for (const auto& [function, calls] : countedCalls())
                text += function + ' ' + std::to_string(calls) + '\n';
            return write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1;
        });
        EXPECT_EQ(ending, 0);
        close(ends[1]);
        return readCounts(ends[0]);
    }

    static std::map<std::string, size_t> readCounts(int pipe) {
        FILE* const input = fdopen(pipe, "r");
        std::map<std::string, size_t> counts;
        char function[64];
        size_t calls = 0;
        while (std::fscanf(input, "%63s %zu", function, &calls) == 2)
            counts[function] = calls;
        std::fclose(input);
        return counts;
    }

    static constexpr int kPace = 100;
    // A sample is larger here: there are more different positions.
    static constexpr size_t kSamples = 4;
    TestRoot root_;
};

TEST_P(FirstCalls, FailingAllocation_LeavesAProcessInWhichTheNextCallWorks) {
    run(allocationSeries);
}

TEST_P(FirstCalls, FailingSystemCall_LeavesAProcessInWhichTheNextCallWorks) {
    run(systemCallSeries);
}

INSTANTIATE_TEST_SUITE_P(Each, FirstCalls,
                         testing::Values(FirstCall{"InitializePOS", false},
                                         FirstCall{"posRegisterApplicationWithClasses", true}),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace dovrel::test
