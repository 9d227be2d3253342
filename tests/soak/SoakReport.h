// The report of one host of the soak, written when it ends.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

namespace dovrel::test {

struct SoakReport {
    uint64_t right = 0;    ///< calls that succeeded with the right output
    uint64_t failed = 0;   ///< calls that failed as pos.h says: POS_FAILURE, and the outputs as documented
    uint64_t wrong = 0;    ///< all other calls
    uint64_t longest = 0;  ///< the longest call, in milliseconds
    uint64_t sessions = 0;
    // After the sessions at the beginning, and after the last session:
    uint64_t heapBefore = 0;  ///< bytes in use
    uint64_t heapAfter = 0;
    uint64_t descriptorsBefore = 0;
    uint64_t descriptorsAfter = 0;

    uint64_t calls() const { return right + failed + wrong; }
};

inline std::ostream& operator<<(std::ostream& stream, const SoakReport& report) {
    return stream << report.right << ' ' << report.failed << ' ' << report.wrong << ' ' << report.longest
                  << ' ' << report.sessions << ' ' << report.heapBefore << ' ' << report.heapAfter << ' '
                  << report.descriptorsBefore << ' ' << report.descriptorsAfter;
}

inline std::istream& operator>>(std::istream& stream, SoakReport& report) {
    return stream >> report.right >> report.failed >> report.wrong >> report.longest >> report.sessions >>
           report.heapBefore >> report.heapAfter >> report.descriptorsBefore >> report.descriptorsAfter;
}

}  // namespace dovrel::test
