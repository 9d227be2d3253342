// Makes calls on Foundation's run loop of the main thread. Private to the layer.
#pragma once

namespace portability {

/// Runs `procedure(parameter)` on the main thread, inside Foundation's run loop, and waits until it has
/// returned. Writes its return value to `result`.
///
/// Returns false, without running the procedure and without changing `result`, if the main thread is not
/// inside its run loop at this moment or does not start the call within one second. May be called on every
/// thread except the main thread. `procedure` must not throw.
bool runOnMainRunLoop(void* (*procedure)(void*), void* parameter, void** result);

}  // namespace portability
