// The real server keeps serving a host while another process of the same user attacks it.
#include <chrono>
#include <iostream>
#include <thread>

#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OtherHost.h"
#include "tests/neighbours/HostileActs.h"

namespace dovrel::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The goal is a tenth of a second; docs/reliability.md has the measured times. This bound holds on any machine that
// makes progress.
constexpr milliseconds kGenerousBound{20000};

// Attacks on a thread of its own until it is destroyed, at least once.
class Attack {
  public:
    explicit Attack(const HostileAct& act)
        : thread_([this, act] {
              do {
                  act.run();
                  ++rounds_;
              } while (!isOver_);
          }) {}
    Attack(const Attack&) = delete;
    Attack& operator=(const Attack&) = delete;
    ~Attack() {
        isOver_ = true;
        thread_.join();
    }

    int rounds() const { return rounds_; }

  private:
    std::atomic<bool> isOver_{false};
    std::atomic<int> rounds_{0};
    std::thread thread_;
};

class HostileSenders : public InSession, public testing::WithParamInterface<HostileAct> {
  protected:
    // Makes one call and checks its result. Returns how long it took.
    milliseconds callOnce(int number) {
        constexpr int kLargeEvery = 10;
        const std::string argument(number % kLargeEvery == 0 ? 100000 : 20,
                                   static_cast<char>('a' + number % 26));
        const auto start = steady_clock::now();
        const Answered answered = host_.call(application_, echo_, "echo", argument);
        const auto end = steady_clock::now();
        EXPECT_EQ(answered.status, POS_OK);
        EXPECT_TRUE(answered.bytes == argument) << "call " << number;
        return std::chrono::duration_cast<milliseconds>(end - start);
    }

    uint32_t application_ = host_.registered({"Echo"});
    ObjectId echo_ = host_.instantiate(application_, "Echo");
};

TEST_P(HostileSenders, OtherHosts_AreServed) {
    constexpr int kFewestCalls = 100;
    constexpr int kFewestRounds = 2;
    const std::vector<pid_t> servers = root_.servers();
    milliseconds longest{0};
    {
        const Attack attack(GetParam());
        for (int call = 0; (call < kFewestCalls || attack.rounds() < kFewestRounds) && !HasFailure(); ++call)
            longest = std::max(longest, callOnce(call));
        OtherHost newcomer(root_.library());
        newcomer.go();
        EXPECT_TRUE(newcomer.endsWell());
    }
    EXPECT_LT(longest, kGenerousBound);
    EXPECT_EQ(root_.servers(), servers);
    RecordProperty("longestCallMs", static_cast<int>(longest.count()));
    std::cout << GetParam() << ": the longest call of the other host took " << longest.count() << " ms"
              << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Each, HostileSenders, testing::ValuesIn(hostileActs()),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace dovrel::test
