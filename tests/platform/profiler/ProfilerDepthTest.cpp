// The profiler with calls 100,000 levels deep, on a thread with a stack of 64 KiB.

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>

#include "platform/profiler/Profiler.h"

namespace dovrel {
namespace {

constexpr uint64_t kDepth = 100'000;
constexpr size_t kStackSize = 64 << 10;

void* run(void* work) {
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
}

void runOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackSize), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_attr_destroy(&attributes);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
}

// Counts all characters but keeps only those after the call tree, which has five thousand million characters.
class ReportBuffer : public std::streambuf {
  public:
    uint64_t count() const { return count_; }
    const std::string& afterTheTree() const { return afterTheTree_; }

  protected:
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        const std::string_view piece(text, static_cast<size_t>(count));
        count_ += piece.size();
        if (!afterTheTree_.empty() || piece.find("=== Methods") != std::string_view::npos)
            afterTheTree_ += piece;
        return count;
    }

  private:
    uint64_t count_ = 0;
    std::string afterTheTree_;
};

uint32_t stoppedClock() {
    return 5;
}

void enterDeep(Profiler& profiler) {
    for (uint64_t i = 0; i < kDepth; ++i)
        profiler.enter("f");
}

void leaveAll(Profiler& profiler) {
    for (uint64_t i = 0; i < kDepth; ++i)
        profiler.leave();
}

std::string makeReport(Profiler& profiler) {
    std::ostringstream stream;
    profiler.report(stream);
    return stream.str();
}

TEST(ProfilerDepth, Report_PrintsAndAggregatesEveryLevel) {
    runOnSmallStack([] {
        static uint32_t ticks;
        ticks = 0;
        Profiler profiler([] { return ticks; });
        enterDeep(profiler);
        ticks = 1;
        leaveAll(profiler);
        ReportBuffer buffer;
        std::ostream stream(&buffer);
        profiler.report(stream);
        // Each call takes one tick. All calls except the last spend it in the call below them.
        const std::string methods =
            "\n=== Methods sorted by self time usage:\n1(100%): f\n"
            "\n=== Methods sorted by total time usage:\n100000: f\n"
            "======== End of profiler report ========\n";
        EXPECT_EQ(buffer.afterTheTree(), methods);
        const uint64_t headers =
            std::string("======== Profiler report ========\n=== Call tree:\n").size() + methods.size();
        const uint64_t blanks = kDepth * (kDepth + 1) / 2;
        const uint64_t callsAndTimes = std::string("f 1 0\n").size() * kDepth;
        EXPECT_EQ(buffer.count(), headers + blanks + callsAndTimes);
    });
}

TEST(ProfilerDepth, Reset_ForgetsEveryLevel) {
    runOnSmallStack([] {
        Profiler profiler(stoppedClock);
        const std::string empty = makeReport(profiler);
        enterDeep(profiler);
        profiler.reset();
        EXPECT_EQ(makeReport(profiler), empty);
    });
}

TEST(ProfilerDepth, Destruction_OfAProfilerWithOpenCalls_Ends) {
    runOnSmallStack([] {
        auto profiler = std::make_unique<Profiler>(stoppedClock);
        enterDeep(*profiler);
        profiler = nullptr;
    });
}

TEST(ProfilerDepth, ScopeWithPrintOnExit_LeavesAnEmptyProfile) {
    runOnSmallStack([] {
        Profiler profiler(stoppedClock);
        const std::string empty = makeReport(profiler);
        installProfiler(&profiler);
        enterDeep(profiler);
        { const ProfilerScope scope("last", true); }
        installProfiler(nullptr);
        EXPECT_EQ(makeReport(profiler), empty);
    });
}

}  // namespace
}  // namespace dovrel
