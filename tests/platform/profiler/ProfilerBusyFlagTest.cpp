// Every operation of the profiler holds its busy flag until it ends. Each test lets another thread enter a call
// while an operation runs. The linker redirects the program's allocations, so that this can also happen in an
// operation that neither reads the clock nor writes.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <ios>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <thread>
#include <utility>

#include "platform/profiler/Profiler.h"
#include "tests/support/WaitUntil.h"

namespace {

using Hook = std::function<void()>;

Hook* nextClockReading = nullptr;
Hook* nextAllocation = nullptr;

// The hook is cleared before it runs, because it reads the clock and allocates as well.
void runOnce(Hook*& hook) {
    if (hook != nullptr) (*std::exchange(hook, nullptr))();
}

// Returns 0, so that every call lasts 0 units, even while it is open.
uint32_t hookedClock() {
    runOnce(nextClockReading);
    return 0;
}

}  // namespace

extern "C" {
void* __real_malloc(size_t size);
void* __wrap_malloc(size_t size);
}

void* __wrap_malloc(size_t size) {
    runOnce(nextAllocation);
    return __real_malloc(size);
}

namespace dovrel {
namespace {

// Enters the call "late" on another thread.
class LateCall {
  public:
    explicit LateCall(Profiler& profiler) : profiler_(profiler) {}
    LateCall(const LateCall&) = delete;
    LateCall& operator=(const LateCall&) = delete;
    ~LateCall() { join(); }

    /// Returns when the thread has entered the call, or when it spins: it has then used more processor time than
    /// an operation needs.
    void start() {
        thread_ = std::thread([this] {
            profiler_.enter("late");
            hasEntered_ = true;
        });
        EXPECT_TRUE(test::waitUntil([this] { return hasEntered_ || isSpinning(); }));
    }

    void join() {
        if (thread_.joinable()) thread_.join();
    }

    bool hasStarted() const { return thread_.joinable(); }
    bool hasEntered() const { return hasEntered_; }

  private:
    bool isSpinning() {
        constexpr long kMostNanoseconds = 20'000'000;
        clockid_t clock;
        timespec used{};
        if (pthread_getcpuclockid(thread_.native_handle(), &clock) != 0) return false;
        return clock_gettime(clock, &used) == 0 && (used.tv_sec > 0 || used.tv_nsec > kMostNanoseconds);
    }

    Profiler& profiler_;
    std::atomic<bool> hasEntered_{false};
    std::thread thread_;
};

// Starts the late call at the first write. Notes whether the call had been entered at the last one.
class InterruptingText : public std::streambuf {
  public:
    explicit InterruptingText(LateCall& late) : late_(late) {}

    bool hadEntered() const { return hadEntered_; }

  protected:
    std::streamsize xsputn(const char*, std::streamsize count) override {
        if (!late_.hasStarted()) late_.start();
        hadEntered_ = late_.hasEntered();
        return count;
    }

  private:
    LateCall& late_;
    bool hadEntered_ = true;
};

class FailingText : public std::streambuf {
  protected:
    std::streamsize xsputn(const char*, std::streamsize) override { return 0; }
};

class ProfilerBusyFlag : public testing::Test {
  protected:
    ProfilerBusyFlag() { profiler_.enter("f"); }
    ~ProfilerBusyFlag() override {
        nextClockReading = nullptr;
        nextAllocation = nullptr;
    }

    /// Sets a hook during which the late call starts. Runs an operation, which must reach the hook and keep the
    /// late call waiting.
    void expectHeld(Hook*& hook, const std::function<void()>& operation) {
        bool hadEntered = true;
        Hook start = [&] {
            late_.start();
            hadEntered = late_.hasEntered();
        };
        hook = &start;
        operation();
        ASSERT_TRUE(late_.hasStarted());
        EXPECT_FALSE(hadEntered);
        late_.join();
        EXPECT_TRUE(late_.hasEntered());
    }

    std::string makeTree() {
        std::ostringstream stream;
        profiler_.report(stream);
        const std::string report = stream.str();
        const std::string start = "=== Call tree:\n";
        const size_t first = report.find(start) + start.size();
        return report.substr(first, report.find("\n===", first) - first);
    }

    Profiler profiler_{hookedClock};
    LateCall late_{profiler_};
};

TEST_F(ProfilerBusyFlag, Enter_HoldsItWhileTheClockIsRead) {
    expectHeld(nextClockReading, [this] { profiler_.enter("g"); });
    EXPECT_EQ(makeTree(), " f 0 0\n  g 0 0\n   late 0 0\n");
}

TEST_F(ProfilerBusyFlag, Leave_HoldsItWhileTheClockIsRead) {
    expectHeld(nextClockReading, [this] { profiler_.leave(); });
    EXPECT_EQ(makeTree(), " f 0 0\n late 0 0\n");
}

TEST_F(ProfilerBusyFlag, LeaveAndDumpWithoutPrintOnExit_HoldsItWhileTheClockIsRead) {
    expectHeld(nextClockReading, [this] { profiler_.leaveAndDump(false); });
    EXPECT_EQ(makeTree(), " f 0 0\n late 0 0\n");
}

TEST_F(ProfilerBusyFlag, LeaveAndDumpWithPrintOnExit_HoldsItWhileTheTreeIsRendered) {
    expectHeld(nextAllocation, [this] { profiler_.leaveAndDump(true); });
    EXPECT_EQ(makeTree(), " late 0 0\n");
}

TEST_F(ProfilerBusyFlag, Reset_HoldsItWhileTheNewTreeIsMade) {
    expectHeld(nextAllocation, [this] { profiler_.reset(); });
    EXPECT_EQ(makeTree(), " late 0 0\n");
}

TEST_F(ProfilerBusyFlag, Report_HoldsItUntilTheLastWrite) {
    InterruptingText text(late_);
    std::ostream stream(&text);
    profiler_.report(stream);
    ASSERT_TRUE(late_.hasStarted());
    EXPECT_FALSE(text.hadEntered());
    late_.join();
    EXPECT_EQ(makeTree(), " f 0 0\n  late 0 0\n");
}

TEST_F(ProfilerBusyFlag, Report_ThatFailsWithAnException_ClearsIt) {
    FailingText text;
    std::ostream stream(&text);
    stream.exceptions(std::ios_base::badbit);
    EXPECT_THROW(profiler_.report(stream), std::ios_base::failure);
    profiler_.enter("g");
    EXPECT_EQ(makeTree(), " f 0 0\n  g 0 0\n") << "reached without waiting for ever";
}

}  // namespace
}  // namespace dovrel
