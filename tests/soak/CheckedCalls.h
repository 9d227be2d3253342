// CheckedCalls: the calls of one thread of a host. Each call's status and outputs are checked.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "tests/soak/SoakReport.h"
#include "tests/support/PosLibrary.h"

namespace dovrel::test {

class CheckedCalls {
  public:
    /// `name` is different for each thread of each host, so that a reply to another thread is noticed.
    CheckedCalls(const PosLibrary& library, std::string name, uint32_t seed);
    CheckedCalls(const CheckedCalls&) = delete;
    CheckedCalls& operator=(const CheckedCalls&) = delete;
    ~CheckedCalls();

    /// Makes one call, chosen at random. If there is no application or no object (for example because it was
    /// lost with its server), the call creates it.
    void next();

    const SoakReport& report() const { return report_; }

  private:
    enum class Ending { right, failed, wrong };

    Ending registerApplication();
    Ending unregisterApplication();
    Ending instantiate();
    Ending deleteObject();
    Ending callMethod();
    Ending executeCommand();
    Ending getInfo();

    static Ending endingFromStatus(uint32_t status, bool isRight, bool isCleared);
    Ending takeOutput(uint32_t status, uint8_t* result, uint32_t length, const std::string& expected);
    bool count(Ending (CheckedCalls::*call)());
    void forgetObject();
    std::string makeArgument();

    const PosLibrary& library_;
    const std::string name_;
    std::mt19937 random_;
    SoakReport report_;
    uint32_t application_ = 0;
    bool isRegistered_ = false;
    void* object_ = nullptr;
};

}  // namespace dovrel::test
