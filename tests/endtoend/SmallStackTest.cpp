// Threads with small stacks.
#include <pthread.h>

#include <functional>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

constexpr size_t kSmallStack = 32 * 1024;

class SmallStack : public EndToEnd {
  protected:
    SmallStack() { library_.InitializePOS(); }
    ~SmallStack() override { library_.TerminatePOS(); }

    // Runs the function on a thread with a small stack. A thread that needs more ends the test's process.
    static void runOnSmallStack(std::function<void()> function) {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
        pthread_t thread;
        const auto run = [](void* argument) -> void* {
            (*static_cast<std::function<void()>*>(argument))();
            return nullptr;
        };
        ASSERT_EQ(pthread_create(&thread, &attributes, run, &function), 0);
        pthread_attr_destroy(&attributes);
        pthread_join(thread, nullptr);
    }
};

TEST_F(SmallStack, CallsThatSucceed_NeedNoMore) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    Answered first;
    Answered large;
    const std::string argument(100'000, 'x');
    runOnSmallStack([&] {
        first = host_.call(application, echo, "echo", "small");
        large = host_.call(application, echo, "echo", argument);
    });
    EXPECT_EQ(first.bytes, "small");
    EXPECT_EQ(large.bytes, argument);
}

TEST_F(SmallStack, FirstCallToARunningServer_NeedsNoMore) {
    const uint32_t application = host_.registered();
    library_.TerminatePOS();
    library_.InitializePOS();
    uint32_t status = POS_FAILURE;
    runOnSmallStack([&] {
        uint32_t other = 0;
        status = host_.registerApplication(other);
    });
    EXPECT_EQ(status, POS_OK) << "after application " << application;
}

}  // namespace
}  // namespace dovrel::test
