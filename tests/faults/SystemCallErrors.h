// How the functions of the C library that make system calls can fail.
#pragma once

namespace dovrel::test {

struct SystemCallErrors {
    const char* function;
    int errors[32];  ///< values of errno; a 0 ends the list
};

/// Returns the row of the function; null if the table does not have it. Allocates nothing.
const SystemCallErrors* findErrors(const char* function);

/// Returns whether the function can fail with that error. Allocates nothing.
bool canFailWith(const char* function, int error);

/// Returns whether the function may process fewer bytes than it was asked to.
bool canBeShort(const char* function);

}  // namespace dovrel::test
