// Work on a task of its own while the calling thread waits for it.
//
// The work runs on a preemptive task; the calling thread only waits, so that the system sees its loop idle
// and not computing. A failure of the work comes back to the caller as if it had been called directly.
#pragma once

#include <functional>

namespace dovrel {

/// Runs `work` on a task and returns when it is done. Whatever it throws is thrown here: a failure of the
/// library by its pointer, which the catcher then owns. Throws a SystemException with the platform's status
/// when no task can be started; the work has not run then.
void runInBackground(const std::function<void()>& work);

/// The same, but failures of the library that leave `work` are deleted. Anything else that it throws is
/// thrown here.
void runInBackgroundDroppingFailures(const std::function<void()>& work);

}  // namespace dovrel
