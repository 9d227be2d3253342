// Faults in every call that an exported function makes to the C library.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/FaultTrial.h"
#include "tests/faults/SystemCallErrors.h"

namespace dovrel::test {
namespace {

size_t numberFrom(const char* variable, size_t otherwise) {
    const char* const text = getenv(variable);
    return text == nullptr ? otherwise : std::strtoul(text, nullptr, 10);
}

// A series of faults: the first call of the function fails, then the second, and so on.
struct Series {
    const char* function;
    int error;
    bool stays;
    size_t calls;  // without a fault
};

// Code that is interrupted again and again is right to begin again and again. The system reports a connection that was
// reset only once.
bool canStay(int error) {
    return error != EINTR && error != ECONNRESET;
}

void addSeries(std::vector<Series>& all, const char* function, int error, size_t calls) {
    all.push_back({function, error, false, calls});
    if (canStay(error)) all.push_back({function, error, true, calls});
}

class Faults : public testing::TestWithParam<Situation> {
  protected:
    ~Faults() override {
        if (tried_ != 0)
            std::cout << GetParam() << ": " << tried_ << " of about " << possible_ << " faults" << std::endl;
    }

    void run(const std::vector<Series>& all) {
        for (const Series& series : all)
            possible_ += series.calls;
        const size_t sample = numberFrom("DOVREL_FAULTS_SAMPLE", kUsualSample);
        if (sample == 0) {
            for (const Series& series : all)
                runWhole(series);
        } else {
            runEach(all, possible_ / sample + 1);
        }
    }

    TestRoot root_;
    FaultTrial trial_{root_, GetParam()};

  private:
    static constexpr size_t kUsualSample = 6;
    static constexpr size_t kMostCalls = 5000;
    static constexpr int kMostFailures = 20;

    // Until the call makes no more calls that could fail. A fault can make them more than there are without one.
    void runWhole(const Series& series) {
        for (size_t nth = 1; nth <= kMostCalls && run(series, nth);)
            ++nth;
    }

    // Of all faults, one in `distance`.
    void runEach(const std::vector<Series>& all, size_t distance) {
        size_t next = numberFrom("DOVREL_FAULTS_SEED", 0) % distance;
        for (const Series& series : all) {
            for (; next < series.calls; next += distance)
                run(series, next + 1);
            next -= series.calls;
        }
    }

    // Returns whether the fault struck.
    bool run(const Series& series, size_t nth) {
        if (failures_ >= kMostFailures) return false;
        const Fault fault{series.function, series.error, nth, series.stays};
        SCOPED_TRACE(testing::PrintToString(fault));
        ++tried_;
        const bool hasStruck = trial_.run(fault);
        if (HasFailure()) ++failures_;
        return hasStruck;
    }

    size_t possible_ = 0;
    size_t tried_ = 0;
    int failures_ = 0;
};

TEST_P(Faults, FailingAllocation_EndsTheCallAsDocumentedAndHarmsNothing) {
    const auto counts = trial_.countCalls();
    const auto allocations = counts.find("malloc");
    std::vector<Series> all;
    if (allocations != counts.end()) addSeries(all, "malloc", ENOMEM, allocations->second);
    run(all);
}

TEST_P(Faults, FailingSystemCall_EndsTheCallAsDocumentedAndHarmsNothing) {
    std::vector<Series> all;
    for (const auto& [function, calls] : trial_.countCalls()) {
        const SystemCallErrors* const row = findErrors(function.c_str());
        if (row == nullptr) continue;
        for (const int* error = row->errors; *error != 0; ++error)
            addSeries(all, row->function, *error, calls);
        if (canBeShort(row->function)) addSeries(all, row->function, Fault::kShort, calls);
    }
    run(all);
}

INSTANTIATE_TEST_SUITE_P(Each, Faults, testing::ValuesIn(allSituations()),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace dovrel::test
