// Starts background tasks, sleeps, and returns the ID of this process.
#pragma once

#include <CoreServices/CoreServices.h>
#include <sys/types.h>

#include <cstdint>

namespace dovrel {

/// Starts `entry` with `parameter` on a preemptive task and returns 0. The task ends when `entry` returns.
/// Its ID is not kept, so no thread can wait for it. `entry` must not throw. If no task can be started, the
/// function returns the platform's status. It also writes the status to standard output, always in decimal,
/// whatever format the host has set for std::cout.
OSStatus startTask(TaskProc entry, void* parameter);

/// Blocks the calling thread for that time.
void sleepMilliseconds(uint32_t milliseconds);

/// Returns the ID of this process, or 0 if the platform's functions fail.
pid_t currentProcessId();

}  // namespace dovrel
