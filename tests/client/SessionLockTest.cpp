// How the operations of the session use its lock.
#include <functional>

#include "tests/client/SessionOperationsTest.h"
#include "tests/client/WatchedMutex.h"

namespace dovrel {
namespace {

constexpr int32_t kForever = -1;

class SessionLockTest : public test::SessionOperationsTest {
  protected:
    /// Makes the session use a lock of this class.
    template <class Lock>
    void openAnewWith() {
        closeSession();
        parts_.createLock = [this] { return std::make_unique<Lock>(use_); };
        openSession(parts_);
    }

    /// Returns every operation, for the application with the identifier 1.
    std::vector<std::function<uint32_t()>> operations() {
        return {
            [this] { return registerHost(&applicationId_); },
            [this] { return instantiate(1); },
            [this] {
                object_ = this;
                return posInstantiateObjectOnExecuter(1, &identifier_, &identifier_, &object_);
            },
            [this] { return call(1); },
            [this] {
                fillOutputs();
                return posCallMethodOnExecuter(1, &identifier_, &identifier_, "add", nullptr, 0, &result_,
                                               &resultLength_);
            },
            [this] { return deleteObject(1); },
            [this] { return execute(1); },
            [this] { return getInfo(1); },
            [this] { return posUnregisterApplication(1); },
        };
    }

    void releaseOutputs() {
        posFreeDllHeapData(object_);
        posDeleteDLLHeapData(result_);
        object_ = nullptr;
        result_ = nullptr;
    }

    test::LockUse use_;
    uint32_t applicationId_ = 99;
};

TEST_F(SessionLockTest, EveryOperation_WaitsForTheLockWithoutALimitAndReleasesItOnce) {
    openAnewWith<test::WatchedMutex>();
    size_t index = 0;
    for (const auto& operation : operations()) {
        use_.forget();
        EXPECT_EQ(operation(), POS_OK) << index;
        EXPECT_EQ(use_.waits(), std::vector<int32_t>{kForever}) << index;
        EXPECT_EQ(use_.unlocks(), 1) << index;
        releaseOutputs();
        ++index;
    }
}

TEST_F(SessionLockTest, EveryOperationThatFails_ReleasesTheLockOnce) {
    openAnewWith<test::WatchedMutex>();
    registered();
    for (uint32_t command = 10; command <= 17; ++command)
        forwarder_->answer(command, test::error(28, "broken"));
    size_t index = 0;
    for (const auto& operation : operations()) {
        use_.forget();
        EXPECT_EQ(operation(), POS_FAILURE) << index;
        EXPECT_EQ(use_.waits(), std::vector<int32_t>{kForever}) << index;
        EXPECT_EQ(use_.unlocks(), 1) << index;
        ++index;
    }
}

TEST_F(SessionLockTest, LockThatCannotBeHad_FailsEveryOperationSilentlyWithItsOutputsCleared) {
    openAnewWith<test::BrokenMutex>();
    size_t index = 0;
    for (const auto& operation : operations()) {
        use_.forget();
        EXPECT_EQ(operation(), POS_FAILURE) << index;
        EXPECT_EQ(use_.waits(), std::vector<int32_t>{kForever}) << index;
        EXPECT_EQ(use_.unlocks(), 0) << index;
        EXPECT_EQ(object_, nullptr) << index;
        EXPECT_EQ(result_, nullptr) << index;
        EXPECT_EQ(resultLength_, 0u) << index;
        EXPECT_EQ(infoLength_, 0) << index;
        ++index;
    }
    EXPECT_EQ(applicationId_, 99u);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_TRUE(forwarder_->calls().empty());
}

}  // namespace
}  // namespace dovrel
