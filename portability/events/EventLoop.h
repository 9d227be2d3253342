// The application event loop as the rest of the layer sees it. Private to the layer.
#pragma once

namespace portability {

/// Runs `function(parameter)` on the thread that is inside RunApplicationEventLoop, between two events, and
/// waits until it has returned; `result` gets what it returned. Called on that very thread it runs at once.
/// False, without having run it and with `result` left alone, when no loop runs or when the loop ends before
/// its turn comes. Any thread; `function` must not throw.
bool runOnEventLoop(void* (*function)(void*), void* parameter, void** result);

}  // namespace portability
