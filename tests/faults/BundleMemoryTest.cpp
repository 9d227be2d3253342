// Lasting lack of memory while a bundle is looked up. An exception that passed through a function of the C
// library would end the process, if it is the first of the process. So each position has its own process.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <new>

#include "tests/faults/Fault.h"
#include "tests/support/Processes.h"

namespace dovrel::test {
namespace {

enum Ending { kStruck, kNotStruck };

int findUnknownBundle(size_t nth) {
    bool hasStruck = false;
    const Fault fault{"malloc", ENOMEM, nth, true};
    try {
        const FaultInEffect effect(fault, hasStruck);
        CFBundleGetBundleWithIdentifier(CFSTR("example.unknown"));
    } catch (const std::bad_alloc&) {
    }
    return hasStruck ? kStruck : kNotStruck;
}

TEST(BundleMemory, LookUpWithoutMemory_ThrowsAtEachPosition) {
    constexpr size_t kMostRequests = 1000;
    constexpr size_t kLeastRequests = 20;
    size_t nth = 1;
    int ending = kStruck;
    for (; nth < kMostRequests && ending == kStruck; ++nth)
        ending = inForkedProcess([nth] { return findUnknownBundle(nth); });
    EXPECT_EQ(ending, kNotStruck) << "request " << nth - 1;
    EXPECT_GT(nth, kLeastRequests);
}

}  // namespace
}  // namespace dovrel::test
