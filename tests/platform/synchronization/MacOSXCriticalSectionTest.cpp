#include "platform/synchronization/MacOSXCriticalSection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/synchronization/SynchronizationFactory.h"

namespace dovrel {
namespace {

TEST(MacOSXCriticalSection, EnterAndLeave_KeepsThreadsApart) {
    MacOSXCriticalSection section;
    constexpr int kThreads = 4;
    constexpr int kRounds = 1000;
    long visits = 0;  // protected only by the section
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                section.enter();
                ++visits;
                section.leave();
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(visits, kThreads * kRounds);
}

TEST(MacOSXCriticalSection, Enter_ByTheThreadThatIsInside_DoesNotBlock) {
    MacOSXCriticalSection section;
    section.enter();
    section.enter();
    section.leave();
    section.leave();
    std::thread([&section] {
        section.enter();
        section.leave();
    }).join();
}

TEST(MacOSXCriticalSection, Leave_WithoutEnter_ReportsNothing) {
    MacOSXCriticalSection section;
    section.leave();
    section.enter();
    section.leave();
}

TEST(MacOSXCriticalSection, Wait_WithAnyTimeout_ThrowsAPlainText) {
    const auto section = createCriticalSection();
    for (const int32_t timeout : {-1, 0, 500}) {
        std::string thrown;
        try {
            section->wait(timeout);
        } catch (const char* text) {
            thrown = text;
        }
        EXPECT_EQ(thrown, "Missing system specific implementation for function 'virtual bool wait()'")
            << timeout;
    }
}

}  // namespace
}  // namespace dovrel
