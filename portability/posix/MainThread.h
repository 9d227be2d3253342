// The thread on which the process was started. Private to the layer.
#pragma once

namespace portability {

/// Whether the caller runs on the main thread, also in a library that another thread has loaded.
bool isMainThread();

}  // namespace portability
