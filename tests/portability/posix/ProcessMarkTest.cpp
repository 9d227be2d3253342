#include "portability/posix/ProcessMark.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/support/Processes.h"

using namespace portability;

TEST(ProcessMark, InOneProcess_IsAlwaysTheSameAndNeverZero) {
    const uint32_t mark = processMark();
    EXPECT_NE(mark, 0u);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([mark] { EXPECT_EQ(processMark(), mark); });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ProcessMark, InAForkedProcess_IsAnother_AndInItsChildrenYetAnother) {
    const uint32_t mark = processMark();
    EXPECT_EQ(inForkedProcess([mark] {
                  const uint32_t childs = processMark();
                  if (childs == mark || childs == 0 || childs != processMark()) return 1;
                  return inForkedProcess([mark, childs] {
                      const uint32_t grandchilds = processMark();
                      return grandchilds == mark || grandchilds == childs ? 2 : 0;
                  });
              }),
              0);
    EXPECT_EQ(processMark(), mark);
}
