// Hosts make calls while their server is killed, stopped and continued.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>
#include <thread>

#include "tests/soak/ServerTroubles.h"
#include "tests/soak/SoakReport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestRoot.h"
#include "tests/support/WaitUntil.h"

namespace dovrel::test {
namespace {

// While a server is stopped or launched, all calls wait. No call may take longer than this.
constexpr uint64_t kLongestCall = 60'000;
// The C library keeps some blocks of ended threads. A host that loses the smallest block with each call or each
// server loses more than this in a minute.
constexpr uint64_t kHeapNoise = 40'000;

// The library keeps a connection, and up to eight blocks of shared memory: four in the connection, four to be
// reused. How many it has at a time depends on the sizes of the last calls.
constexpr uint64_t kKeptDescriptors = 9;

uint32_t numberFrom(const char* variable, uint32_t otherwise) {
    const char* const text = getenv(variable);
    return text == nullptr ? otherwise : static_cast<uint32_t>(std::strtoul(text, nullptr, 10));
}

class Soak : public testing::Test {
  protected:
    Soak() : seed_(numberFrom("DOVREL_SOAK_SEED", std::random_device()())) {
        std::cout << "DOVREL_SOAK_SEED=" << seed_ << std::endl;
    }

    void run(int hosts, int threads) {
        startHosts(hosts, threads);
        ServerTroubles troubles(root_, seed_);
        const auto time = std::chrono::seconds(numberFrom("DOVREL_SOAK_SECONDS", 4));
        std::this_thread::sleep_for(time);
        troubles.end();
        expectReports();
        EXPECT_LE(troubles.mostServers(), 1u);
        EXPECT_GT(troubles.kills(), 0);
        std::cout << total_.calls() << " calls, " << total_.failed << " failed, " << total_.wrong
                  << " wrong; longest " << total_.longest << " ms; server killed " << troubles.kills()
                  << " times, stopped " << troubles.stops() << " times; " << total_.sessions << " sessions"
                  << std::endl;
    }

  private:
    void startHosts(int hosts, int threads) {
        for (int host = 0; host < hosts; ++host) {
            const std::string name = "host" + std::to_string(host);
            hosts_.emplace_back(std::vector<std::string>{
                SOAK_HOST, root_.library(), name, std::to_string(threads),
                std::to_string(seed_ + 1'000'003u * static_cast<uint32_t>(host)), root_.path() + '/' + name});
        }
    }

    void expectReports() {
        for (ChildProcess& host : hosts_)
            host.closeInput();
        for (ChildProcess& host : hosts_) {
            std::istringstream line(host.readLine());
            SoakReport report;
            ASSERT_TRUE(line >> report) << "a host hangs or has ended early";
            expectSound(report);
            EXPECT_EQ(host.wait(), 0);
        }
    }

    void expectSound(const SoakReport& report) {
        EXPECT_EQ(report.wrong, 0u);
        EXPECT_GT(report.right, report.failed);
        EXPECT_LT(report.longest, kLongestCall);
        EXPECT_LE(report.heapAfter, report.heapBefore + kHeapNoise);
        EXPECT_LE(report.descriptorsAfter, report.descriptorsBefore + kKeptDescriptors);
        total_.right += report.right;
        total_.failed += report.failed;
        total_.wrong += report.wrong;
        total_.sessions += report.sessions;
        total_.longest = std::max(total_.longest, report.longest);
    }

    const uint32_t seed_;
    TestRoot root_;
    std::deque<ChildProcess> hosts_;
    SoakReport total_;
};

TEST_F(Soak, EightThreadsOfOneHost_GetTheRightReplyOrAFailure) {
    run(1, 8);
}

TEST_F(Soak, SixteenHosts_GetTheRightReplyOrAFailure) {
    run(16, 1);
}

}  // namespace
}  // namespace dovrel::test
