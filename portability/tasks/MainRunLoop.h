// Makes calls on Foundation's run loop of the main thread. Private to the layer.
#pragma once

namespace portability {

/// Runs `procedure(parameter)` on the main thread, inside Foundation's run loop, and waits until it has
/// returned. Writes its return value to `result`. May be called on every thread except the main thread.
/// `procedure` must not throw.
///
/// Returns false, without running the procedure and without changing `result`, in these cases:
/// - The main thread is not inside its run loop at this moment.
/// - The call has not started after one second.
bool runOnMainRunLoop(void* (*procedure)(void*), void* parameter, void** result);

}  // namespace portability
