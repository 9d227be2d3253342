// Hosts with a limit of file sizes, which also holds for shared memory.
#include <sys/resource.h>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

// The default action of SIGXFSZ stays, so a signal ends the test's process.
class Limits : public EndToEnd {
  protected:
    Limits() {
        getrlimit(RLIMIT_FSIZE, &before_);
        library_.InitializePOS();
    }
    ~Limits() override {
        library_.TerminatePOS();
        setrlimit(RLIMIT_FSIZE, &before_);
    }

    void limitFileSizes() const {
        constexpr rlim_t kLimit = 16384;
        rlimit limit = before_;
        limit.rlim_cur = kLimit;
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }

    const std::string large_ = std::string(20000, 'x');
    rlimit before_{};
};

TEST_F(Limits, LargeCallOfAHostWithALimitOfFileSizes_FailsAndTheNextSucceeds) {
    const uint32_t application = host_.registered();
    limitFileSizes();
    Console console;
    EXPECT_EQ(host_.command(application, "ping", large_).status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 1u);
    EXPECT_EQ(host_.command(application, "ping", "small").bytes, "small");
}

TEST_F(Limits, ServerOfAHostWithALimitOfFileSizes_HasNone) {
    limitFileSizes();
    const uint32_t application = host_.registered();
    setrlimit(RLIMIT_FSIZE, &before_);
    EXPECT_EQ(host_.command(application, "ping", large_).bytes, large_);
}

}  // namespace
}  // namespace dovrel::test
