// FaultTrial: makes one call with a fault and checks everything that must hold afterwards.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/faults/Fault.h"
#include "tests/faults/FaultedHost.h"
#include "tests/faults/Situations.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestRoot.h"
#include "tests/support/VariableChange.h"

namespace dovrel::test {

class FaultTrial {
  public:
    FaultTrial(const TestRoot& root, const Situation& situation);

    /// Makes the call without a fault. Returns how often it calls each function of the table of errors; allocations
    /// have the name "malloc".
    std::map<std::string, size_t> countCalls();

    /// Makes the call with the fault. Returns whether the fault struck. Fails the test if the result or the outputs
    /// are not as documented, memory or descriptors are lost, the state of the process has changed, or the
    /// next call, a new session or another host does not work.
    bool run(const Fault& fault);

  private:
    struct Resources {
        size_t heap = 0;
        size_t descriptors = 0;
    };

    bool prepare();
    bool make(const Fault& fault);
    void expectRecovery(bool keepsObject);
    std::string findDamage(bool keepsObject);
    Resources measure() const;
    void expectNothingLost(const Fault& fault, Resources before);

    const VariableChange spinning_;
    const TestRoot& root_;
    const Situation situation_;
    FaultedHost host_;
    ChildProcess neighbour_;
    std::vector<pid_t> servers_;
    bool hasLostException_ = false;
};

}  // namespace dovrel::test
