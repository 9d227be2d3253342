// For tests of what only root can do.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// Leaves the test when root's rights are missing; the report says which one it takes.
#define NEEDS_ROOT(right) \
    if (geteuid() != 0) GTEST_SKIP() << "root's right is missing to " right
