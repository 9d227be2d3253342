// C functions of the platform that other systems do not have.
#pragma once

#include <unistd.h>

#if defined(__cplusplus)
extern "C" {
#endif

/// Returns 1 if the program runs with another user's or group's rights, or got them when it was started
/// (set-user-ID or set-group-ID), otherwise 0. If it is 1, the environment comes from a user without these
/// rights. Thread-safe.
int issetugid(void);

#if defined(__cplusplus)
}
#endif
