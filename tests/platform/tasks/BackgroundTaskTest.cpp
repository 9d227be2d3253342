#include "platform/tasks/BackgroundTask.h"

#include <CoreServices/CoreServices.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "platform/SystemException.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using testing::StrEq;

TEST(BackgroundTask, Run_ReturnsAfterTheWorkIsDoneOnAnotherThread) {
    std::thread::id worker;
    bool isPreemptive = false;
    runInBackground([&] {
        worker = std::this_thread::get_id();
        isPreemptive = MPTaskIsPreemptive(kInvalidID);
    });
    EXPECT_NE(worker, std::thread::id());
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_TRUE(isPreemptive);
}

TEST(BackgroundTask, Run_WhenTheWorkFails_ThrowsThatVeryFailureHere) {
    CPPException* thrown = nullptr;
    const auto failure = test::failureOf<SystemException>([&] {
        runInBackground([&] {
            auto* const made = new SystemException("in the task", -36);
            thrown = made;
            throw made;
        });
    });
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure.get(), thrown);
    EXPECT_THAT(failure->getDetail(), StrEq("in the task"));
    EXPECT_EQ(failure->getTypeCode(), 44u);
}

TEST(BackgroundTask, Run_WhenTheWorkThrowsSomethingElse_ThrowsThatHere) {
    EXPECT_THROW(runInBackground([] { throw std::out_of_range("far"); }), std::out_of_range);
    EXPECT_THROW(runInBackground([] { throw 5; }), int);
}

TEST(BackgroundTask, RunIgnoringFailures_WhenTheWorkFails_DeletesTheFailure) {
    struct Watched : CPPException {
        explicit Watched(bool& deleted) : deleted_(deleted) {}
        ~Watched() override { deleted_ = true; }
        bool& deleted_;
    };
    bool deleted = false;
    EXPECT_NO_THROW(runInBackgroundIgnoringFailures([&] { throw new Watched(deleted); }));
    EXPECT_TRUE(deleted);
}

TEST(BackgroundTask, RunIgnoringFailures_WhenTheWorkThrowsSomethingElse_ThrowsThatHere) {
    EXPECT_THROW(runInBackgroundIgnoringFailures([] { throw std::out_of_range("far"); }), std::out_of_range);
}

TEST(BackgroundTask, Run_ManyTimes_LosesNoSignal) {
    int done = 0;
    for (int i = 0; i < 300; ++i)
        runInBackground([&] { ++done; });
    EXPECT_EQ(done, 300);
}

TEST(BackgroundTask, Run_InsideOfAnother_Works) {
    int depth = 0;
    runInBackground([&] { runInBackground([&] { depth = 2; }); });
    EXPECT_EQ(depth, 2);
}

}  // namespace
}  // namespace dovrel
