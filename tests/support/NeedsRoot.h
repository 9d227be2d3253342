// For tests of things that only root can do.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// Skips the test if it does not run as root. The report names the missing right.
#define NEEDS_ROOT(right) \
    if (geteuid() != 0) GTEST_SKIP() << "root's right is missing to " right
