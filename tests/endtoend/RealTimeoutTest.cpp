// How long the library waits for a server that never replies to the handshake. This test waits in real time.
#include <chrono>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

class Timeout : public InSession {};

TEST_F(Timeout, AServerThatNeverRepliesToTheHandshake_IsGivenUpAfterTheTenthOfFiveSeconds) {
    root_.configure(setting("log", 1) + setting("handshake", "silent"));
    uint32_t application = 0;
    const auto start = steady_clock::now();
    Console console;
    EXPECT_EQ(host_.registerApplication(application), POS_FAILURE);
    console.stop();
    const auto waited = steady_clock::now() - start;
    EXPECT_GE(waited, seconds(49));
    EXPECT_EQ(countOccurrences(console.output(), "\nerror: -1712\n"), 1u) << console.output();
    EXPECT_EQ(countOccurrences(console.output(), " Could not launch Merrowd server application! \n"), 1u);
    EXPECT_EQ(countFailures(console, texts_.text("DLL_MSG_MERROWD_IS_CORRUPT_MACOSX"),
                            "DLL_ERROR_UNRECOVERABLE_ERROR"),
              1u);
    EXPECT_EQ(root_.servers().size(), 1u) << "the one that never answered, and no second one";
}

}  // namespace
}  // namespace dovrel::test
