#include "platform/profiler/Profiler.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <string>

namespace dovrel {
namespace {

uint32_t stoppedClock() {
    return 5;
}

class ProfilerScopeTest : public testing::Test {
  protected:
    void SetUp() override { installProfiler(&profiler_); }
    void TearDown() override { installProfiler(nullptr); }

    bool reports(const std::string& tree) {
        std::ostringstream stream;
        profiler_.report(stream);
        return stream.str().find("=== Call tree:\n" + tree + "\n=== Methods") != std::string::npos;
    }

    Profiler profiler_{stoppedClock};
};

TEST_F(ProfilerScopeTest, Scope_IsOneCall) {
    { const ProfilerScope scope("f", false); }
    EXPECT_TRUE(reports(" f 0 0\n"));
}

TEST_F(ProfilerScopeTest, ScopeInsideAScope_IsACallOfIt) {
    {
        const ProfilerScope outer("outer", false);
        { const ProfilerScope inner("inner", false); }
        { const ProfilerScope inner("inner", false); }
    }
    EXPECT_TRUE(reports(" outer 0 0\n  inner 0 0\n  inner 0 0\n"));
}

TEST_F(ProfilerScopeTest, ScopeWithPrintOnExit_LeavesAnEmptyProfile) {
    { const ProfilerScope scope("f", false); }
    { const ProfilerScope scope("g", true); }
    EXPECT_TRUE(reports(""));
}

TEST_F(ProfilerScopeTest, ScopeWithPrintOnExitInsideAnother_LeavesTheOuterNothingToEnd) {
    {
        const ProfilerScope outer("outer", false);
        { const ProfilerScope inner("inner", true); }
    }
    EXPECT_TRUE(reports(""));
}

TEST_F(ProfilerScopeTest, ScopeWithoutAProfiler_DoesNothing) {
    installProfiler(nullptr);
    { const ProfilerScope scope("f", true); }
    EXPECT_TRUE(reports(""));
}

TEST_F(ProfilerScopeTest, ScopeWhoseEndFails_DoesNotEndTheProgram) {
    static bool broken = false;
    Profiler profiler([] {
        if (broken) throw std::bad_alloc();
        return uint32_t{5};
    });
    installProfiler(&profiler);
    {
        const ProfilerScope scope("f", true);
        broken = true;
    }
    broken = false;
    profiler.leave();
    std::ostringstream stream;
    profiler.report(stream);
    EXPECT_NE(stream.str().find("\n f 0 0\n"), std::string::npos) << "the call was still open";
}

}  // namespace
}  // namespace dovrel
