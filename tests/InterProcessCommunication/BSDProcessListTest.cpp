#include "InterProcessCommunication/BSDProcessList.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <new>

#include "tests/InterProcessCommunication/PlatformDouble.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/HeapWatch.h"

namespace dovrel {
namespace {

using test::PlatformDouble;

class BSDProcessListTest : public testing::Test {
  protected:
    ~BSDProcessListTest() override { std::free(list); }

    int getList() { return GetBSDProcessList(&list, &count); }

    PlatformDouble platform;
    kinfo_proc* list = nullptr;
    size_t count = 77;
};

TEST_F(BSDProcessListTest, List_HoldsEveryRecordOfTheKernel) {
    platform.processes = {"launchd", "Merrowd", "kernel_task"};
    EXPECT_EQ(getList(), 0);
    ASSERT_EQ(count, 3u);
    EXPECT_STREQ(list[0].kp_proc.p_comm, "launchd");
    EXPECT_STREQ(list[1].kp_proc.p_comm, "Merrowd");
    EXPECT_STREQ(list[2].kp_proc.p_comm, "kernel_task");
    EXPECT_EQ(platform.queries, 2);
}

TEST_F(BSDProcessListTest, RealList_HoldsThisProcess) {
    ASSERT_EQ(getList(), 0);
    bool found = false;
    for (size_t i = 0; i < count; ++i)
        found = found || list[i].kp_proc.p_pid == getpid();
    EXPECT_TRUE(found);
}

TEST_F(BSDProcessListTest, UnusablePointers_AreError1AndChangeNothing) {
    EXPECT_EQ(GetBSDProcessList(nullptr, &count), 1);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(GetBSDProcessList(&list, nullptr), 1);
    EXPECT_EQ(list, nullptr);

    auto* const held = static_cast<kinfo_proc*>(std::malloc(sizeof(kinfo_proc)));
    list = held;
    EXPECT_EQ(getList(), 1);
    EXPECT_EQ(list, held);
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(platform.queries, 0);
}

TEST_F(BSDProcessListTest, FailedSizeQuery_IsItsErrorNumberAndNoList) {
    platform.queryErrors = {{1, EPERM}};
    EXPECT_EQ(getList(), EPERM);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(platform.queries, 1);
}

TEST_F(BSDProcessListTest, OutOfMemoryInTheSizeQuery_DoesNotCauseAnotherAttempt) {
    platform.queryErrors = {{1, ENOMEM}};
    EXPECT_EQ(getList(), ENOMEM);
    EXPECT_EQ(platform.queries, 1);
}

TEST_F(BSDProcessListTest, ListThatGrewBetweenTheQueries_IsAskedForAnew) {
    platform.processes = {"one"};
    platform.queryErrors = {{2, ENOMEM}, {4, ENOMEM}};
    platform.beforeQuery = [this](int query) {
        if (query == 3) platform.processes = {"one", "two"};
    };
    EXPECT_EQ(getList(), 0);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(platform.queries, 6);
}

TEST_F(BSDProcessListTest, AnyOtherFailureOfTheSecondQuery_EndsTheAttempts) {
    platform.processes = {"one"};
    platform.queryErrors = {{2, EINVAL}};
    EXPECT_EQ(getList(), EINVAL);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(platform.queries, 2);
}

TEST_F(BSDProcessListTest, BlockThatCannotBeHad_IsError12) {
    platform.processes = {"one"};
    test::HeapWatch heap;
    heap.failFrom(1);
    EXPECT_EQ(getList(), 12);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(platform.queries, 1);
}

TEST_F(BSDProcessListTest, QueryThatThrows_LosesNoBlock) {
    platform.processes = std::vector<std::string>(5000, "a process");
    platform.beforeQuery = [](int query) {
        if (query % 2 == 0) throw std::bad_alloc();
    };
    EXPECT_THROW(getList(), std::bad_alloc);
    const size_t before = test::heapInUse();
    EXPECT_THROW(getList(), std::bad_alloc);
    EXPECT_LT(test::heapInUse(), before + 100'000) << "the block for 5000 records is larger";
    EXPECT_EQ(list, nullptr);
}

TEST_F(BSDProcessListTest, ErrorAndListThatAgree_PassTheAssertion) {
    const kinfo_proc record = {};
    assertListAgreesWithError(0, &record);
    assertListAgreesWithError(ENOMEM, nullptr);
}

TEST_F(BSDProcessListTest, ErrorAndListThatDisagree_EndTheProgramNamingThePlace) {
    const kinfo_proc record = {};
    const char* const message =
        "\\(err == 0\\) == \\(\\*procList != NULL\\)\\), function GetBSDProcessList, file "
        "Client_to_POS_Communicator, line 134";
    EXPECT_DEATH(assertListAgreesWithError(ENOMEM, &record), message);
    EXPECT_DEATH(assertListAgreesWithError(0, nullptr), message);
}

}  // namespace
}  // namespace dovrel
