// A process that does not really end, but records what it is asked to do.
#pragma once

#include <string>
#include <vector>

#include "server/ServerProcess.h"

namespace merrowd::test {

/// Thrown instead of ending the process.
struct Vanished {};

class FakeProcess : public ServerProcess {
  public:
    void pause(std::chrono::milliseconds time) override {
        calls.push_back("pause " + std::to_string(time.count()));
    }
    void hang() override { calls.emplace_back("hang"); }
    [[noreturn]] void vanish() override {
        calls.emplace_back("vanish");
        throw Vanished();
    }

    std::vector<std::string> calls;
};

}  // namespace merrowd::test
