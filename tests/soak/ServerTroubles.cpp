#include "tests/soak/ServerTroubles.h"

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace dovrel::test {

namespace {

constexpr int64_t kLongestPeace = 250;  // milliseconds between two troubles, at most
constexpr int64_t kLongestStop = 400;
constexpr uint32_t kKillsForEachStop = 10;

}  // namespace

ServerTroubles::ServerTroubles(const TestRoot& root, uint32_t seed)
    : root_(root), random_(seed), thread_([this] { run(); }) {}

ServerTroubles::~ServerTroubles() {
    end();
}

void ServerTroubles::end() {
    ends_ = true;
    if (thread_.joinable()) thread_.join();
}

void ServerTroubles::run() {
    while (!ends_) {
        pause(kLongestPeace);
        makeTrouble();
    }
}

void ServerTroubles::makeTrouble() {
    const std::vector<pid_t> servers = root_.servers();
    if (servers.empty()) return;
    const pid_t server = servers.at(random_() % servers.size());
    if (random_() % (kKillsForEachStop + 1) != 0) {
        if (kill(server, SIGKILL) == 0) ++kills_;
        return;
    }
    if (kill(server, SIGSTOP) == 0) ++stops_;
    pause(kLongestStop);
    kill(server, SIGCONT);
}

// Counts the servers meanwhile.
void ServerTroubles::pause(int64_t longestMilliseconds) {
    std::uniform_int_distribution<int64_t> milliseconds(0, longestMilliseconds);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds(random_));
    do {
        mostServers_ = std::max(mostServers_, root_.servers().size());
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    } while (!ends_ && std::chrono::steady_clock::now() < end);
}

}  // namespace dovrel::test
