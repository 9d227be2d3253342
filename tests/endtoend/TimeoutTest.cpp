// How long the library waits for a server that never replies to a request. The clock is fast: the test takes
// seconds.
#include <signal.h>

#include <chrono>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/FastClock.h"
#include "tests/support/UserTexts.h"

namespace dovrel::test {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

class Timeout : public InSession {};

TEST_F(Timeout, ADataExchangeThatIsNeverAnswered_EndsAfterTenThousandTicks) {
    const uint32_t application = host_.registered();
    ServerControl::send(misbehaviour("silent", "execute command"));
    Console console;
    {
        const FastClock clock(50);
        const auto start = steady_clock::now();
        EXPECT_EQ(host_.command(application, "ping").status, POS_FAILURE);
        EXPECT_GE(steady_clock::now() - start, seconds(166));
    }
    console.stop();
    EXPECT_EQ(countFailures(console, kCommunicationError, "DLL_ERROR_UNRECOVERABLE_ERROR"), 1u);
    root_.endServers(SIGTERM);
}

}  // namespace
}  // namespace dovrel::test
