// Foundation's run loop of the main thread. Private to the layer.
#pragma once

namespace portability {

/// Runs `procedure(parameter)` on the main thread, from within Foundation's run loop, and waits until it has
/// returned; `result` receives what it returned. Returns false, without having run it and with `result` left
/// alone, if the main thread is not inside its run loop at this moment, or if it does not begin the procedure
/// within a second. Any thread but the main one; `procedure` must not throw.
bool runOnMainRunLoop(void* (*procedure)(void*), void* parameter, void** result);

}  // namespace portability
