// For tests of denied permissions, because root is denied none.
#pragma once

#include <unistd.h>

#include "tests/support/Processes.h"

/// Returns the result of `check` in a forked process without special rights. If the test runs as root, the
/// forked process first becomes the user "nobody".
template <typename Check>
bool holdsForOrdinaryUser(Check check) {
    return inForkedProcess([&check] {
               constexpr uid_t kNobody = 65534;
               const bool isOrdinary = geteuid() != 0 || (setgid(kNobody) == 0 && setuid(kNobody) == 0);
               return isOrdinary && check() ? 0 : 1;
           }) == 0;
}
