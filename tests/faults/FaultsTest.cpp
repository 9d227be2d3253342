// Faults in every call that an exported function makes to the C library, in a process that has made the call
// before.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "tests/faults/FaultSeries.h"
#include "tests/faults/FaultTrial.h"

namespace dovrel::test {
namespace {

class Faults : public testing::TestWithParam<Situation> {
  protected:
    void run(const std::vector<FaultSeries>& all) {
        const size_t possible =
            tryFaults(all, sampleSize(), [this](const Fault& fault) { return run(fault); });
        std::cout << GetParam() << ": " << tried_ << " of about " << possible << " faults" << std::endl;
    }

    TestRoot root_;
    FaultTrial trial_{root_, GetParam()};

  private:
    static constexpr int kMostFailures = 20;

    // Returns whether the fault struck.
    bool run(const Fault& fault) {
        if (failures_ >= kMostFailures) return false;
        SCOPED_TRACE(testing::PrintToString(fault));
        ++tried_;
        const bool hasStruck = trial_.run(fault);
        if (HasFailure()) ++failures_;
        return hasStruck;
    }

    size_t tried_ = 0;
    int failures_ = 0;
};

TEST_P(Faults, FailingAllocation_EndsTheCallAsDocumentedAndHarmsNothing) {
    run(allocationSeries(trial_.countCalls()));
}

TEST_P(Faults, FailingSystemCall_EndsTheCallAsDocumentedAndHarmsNothing) {
    run(systemCallSeries(trial_.countCalls()));
}

INSTANTIATE_TEST_SUITE_P(Each, Faults, testing::ValuesIn(allSituations()),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace dovrel::test
