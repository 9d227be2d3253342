// ServerTroubles: while it exists, a thread kills the server of a root at random times, or stops it for a while.
#pragma once

#include <atomic>
#include <cstdint>
#include <random>
#include <thread>

#include "tests/support/TestRoot.h"

namespace dovrel::test {

class ServerTroubles {
  public:
    ServerTroubles(const TestRoot& root, uint32_t seed);
    ServerTroubles(const ServerTroubles&) = delete;
    ServerTroubles& operator=(const ServerTroubles&) = delete;
    ~ServerTroubles();

    /// Ends the thread. No server stays stopped. The results below are valid afterwards.
    void end();

    int kills() const { return kills_; }
    int stops() const { return stops_; }

    /// Returns the greatest number of servers that were seen at one time.
    size_t mostServers() const { return mostServers_; }

  private:
    void run();
    void makeTrouble();
    void pause(int64_t longestMilliseconds);

    const TestRoot& root_;
    std::mt19937 random_;
    std::atomic<bool> ends_{false};
    int kills_ = 0;
    int stops_ = 0;
    size_t mostServers_ = 0;
    std::thread thread_;
};

}  // namespace dovrel::test
