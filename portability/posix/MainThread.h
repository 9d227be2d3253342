// Recognises the main thread. Private to the layer.
#pragma once

namespace portability {

/// Returns whether the caller runs on the process's first thread. This also works in a library that another
/// thread has loaded.
bool isMainThread();

}  // namespace portability
