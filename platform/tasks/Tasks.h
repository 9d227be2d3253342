// Tasks and processes: starting a background task, sleeping, the id of this process.
#pragma once

#include <CoreServices/CoreServices.h>
#include <sys/types.h>

#include <cstdint>

namespace dovrel {

/// Starts `entry` with `parameter` on a preemptive task and returns 0. Nothing is kept of the task: it ends
/// when `entry` returns, and nobody can wait for it. No exception may leave `entry`. If no task can be started,
/// the platform's status is returned and written to standard output, in decimal, whatever format the host has
/// given std::cout.
OSStatus startTask(TaskProc entry, void* parameter);

/// Blocks the calling thread.
void sleepMilliseconds(uint32_t milliseconds);

/// 0 when the platform cannot tell.
pid_t currentProcessId();

}  // namespace dovrel
