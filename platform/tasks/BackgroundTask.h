// Runs work on its own task while the calling thread waits for the result.
//
// The work runs on a preemptive task. The calling thread only waits, so the system sees it as idle, not as
// busy computing. The caller receives the work's exceptions as if it had called the work directly.
#pragma once

#include <functional>

namespace dovrel {

/// Runs `work` on a task and returns after `work` returned. Throws every exception that `work` throws; an
/// exception of the library is thrown by pointer, and the catching code owns it. Throws a SystemException
/// with the platform's status if no task can be started; `work` has then not run.
void runInBackground(const std::function<void()>& work);

/// As runInBackground, but deletes the library's exceptions that `work` throws instead of throwing them.
/// Every other exception of `work` is thrown here.
void runInBackgroundIgnoringFailures(const std::function<void()>& work);

}  // namespace dovrel
