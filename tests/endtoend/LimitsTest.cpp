// Hosts with a limit of file sizes, which also holds for shared memory.
#include <sys/resource.h>

#include <filesystem>
#include <fstream>

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

    void limitFileSizes(rlim_t bytes = 16384) const {
        rlimit limit = before_;
        limit.rlim_cur = bytes;
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

TEST_F(Limits, FailureOfAHostWhoseFilesMustNotGrow_IsReportedAndTheHostLives) {
    const uint32_t application = host_.registered();
    const std::string log = root_.path() + "/Library/Logs/Tessilor/POSDLLErrorLog.txt";
    std::filesystem::create_directories(std::filesystem::path(log).parent_path());
    // The log is as long as the limit. Standard error is also a file.
    for (const size_t bytes : {0, 16384}) {
        std::ofstream(log) << std::string(bytes, '\n');
        const Console console;
        limitFileSizes(bytes);
        EXPECT_EQ(host_.command(application, "no such command").status, POS_FAILURE);
        setrlimit(RLIMIT_FSIZE, &before_);
        EXPECT_EQ(readFile(log).size(), bytes);
    }
    EXPECT_EQ(host_.command(application, "ping", "small").bytes, "small");
}

}  // namespace
}  // namespace dovrel::test
