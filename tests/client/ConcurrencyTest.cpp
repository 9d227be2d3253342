#include <atomic>
#include <thread>

#include "tests/client/SessionTest.h"
#include "tests/client/WatchedMutex.h"
#include "tests/support/WaitUntil.h"

namespace dovrel {
namespace {

using test::Identifier;

constexpr int kThreads = 8;
constexpr int kRounds = 60;

class ConcurrencyTest : public test::SessionTest {
  protected:
    /// Counts the threads that are inside the guarded part at the same time.
    void enter() {
        if (inside_.fetch_add(1) != 0) overlaps_.fetch_add(1);
        std::this_thread::yield();
    }
    void leave() { inside_.fetch_sub(1); }

    template <typename Work>
    static void onAllThreads(const Work& work) {
        std::vector<std::thread> threads;
        for (int index = 0; index < kThreads; ++index)
            threads.emplace_back([&work, index] { work(index); });
        for (std::thread& thread : threads)
            thread.join();
    }

    std::atomic<int> inside_{0};
    std::atomic<int> overlaps_{0};
};

TEST_F(ConcurrencyTest, EightThreads_EachReceivesItsOwnRepliesOneOperationAtATime) {
    forwarder_->answer(posCommand::kCallMethod, [this](POSTransferObj& request) {
        enter();
        const std::string parameters = request.readString(110);
        auto answer = test::result(parameters)(request);
        leave();
        return answer;
    });

    std::atomic<int> failures{0};
    onAllThreads([&failures](int thread) {
        Identifier name("Counter");
        void* handle = name.bytes();
        for (int round = 0; round < kRounds; ++round) {
            uint32_t applicationId = 0;
            const std::string application = "Host " + std::to_string(thread);
            if (posRegisterApplicationWithClasses(application.c_str(), &handle, 1, nullptr, 0,
                                                  &applicationId) != POS_OK)
                ++failures;

            std::string parameters = application + " in round " + std::to_string(round);
            uint8_t* result = nullptr;
            uint32_t length = 0;
            if (posCallMethod(applicationId, &handle, "echo", reinterpret_cast<uint8_t*>(parameters.data()),
                              static_cast<uint32_t>(parameters.size()), &result, &length) != POS_OK)
                ++failures;
            if (std::string(reinterpret_cast<char*>(result), length) != parameters) ++failures;
            posDeleteDLLHeapData(result);
            if (posUnregisterApplication(applicationId) != POS_OK) ++failures;
        }
    });
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(overlaps_, 0);
    EXPECT_EQ(forwarder_->requests(posCommand::kCallMethod).size(), size_t{kThreads} * kRounds);
    EXPECT_EQ(currentSession()->client().applicationCount(), 0u);
}

TEST_F(ConcurrencyTest, EightThreadsThatFail_OpenOneAlertAtATime) {
    forwarder_->answer(posCommand::kGetInformation, test::error(28, "broken"));
    dialog_->onShow = [this] {
        enter();
        leave();
    };
    onAllThreads([](int) {
        for (int round = 0; round < kRounds; ++round) {
            uint8_t* info = nullptr;
            int32_t length = 0;
            EXPECT_EQ(posGetInfo(0, "about", 5, &info, &length), POS_FAILURE);
        }
    });
    EXPECT_EQ(overlaps_, 0);
    EXPECT_EQ(dialog_->shown.size(), size_t{kThreads} * kRounds);
}

TEST_F(ConcurrencyTest, OpenAlert_KeepsOtherOperationsWaiting) {
    test::LockUse use;
    closeSession();
    parts_.createLock = [&use] { return std::make_unique<test::WatchedMutex>(use); };
    openSession(parts_);
    forwarder_->answer(posCommand::kGetInformation, test::error(28, "broken"));

    std::atomic<bool> otherReturned{false};
    std::thread other;
    dialog_->onShow = [&] {
        other = std::thread([&] {
            posUnregisterApplication(1);
            otherReturned = true;
        });
        // The second wait for the lock is that of the other thread.
        EXPECT_TRUE(test::waitUntil([&use] { return use.waits().size() == 2; }));
        EXPECT_EQ(use.unlocks(), 0);
        EXPECT_FALSE(otherReturned);
    };
    uint8_t* info = nullptr;
    int32_t length = 0;
    EXPECT_EQ(posGetInfo(0, "about", 5, &info, &length), POS_FAILURE);
    other.join();
    EXPECT_TRUE(otherReturned);
    EXPECT_EQ(use.unlocks(), 2);
    closeSession();
}

}  // namespace
}  // namespace dovrel
