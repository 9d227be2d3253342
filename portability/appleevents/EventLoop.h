// The interface of the application event loop to the rest of the layer. Private to the layer.
#pragma once

#include "portability/transport/Endpoint.h"

namespace portability {

/// Runs `function(parameter)` on the thread that is inside RunApplicationEventLoop, between two events, and
/// waits until it has returned. Writes its return value to `result`. If the caller is on that thread, the
/// function runs at once.
///
/// Returns false, without running the function and without changing `result`, if no loop is running, if
/// the loop ends first, or if the loop does not start the call within one second. Thread-safe. `function`
/// must not throw.
bool runOnEventLoop(void* (*function)(void*), void* parameter, void** result);

/// Runs the loop of RunApplicationEventLoop with an endpoint that the caller has claimed. Handles the
/// endpoint's requests on this thread until QuitApplicationEventLoop is called, and then closes the endpoint.
/// Returns at once if a loop is already running.
void runEventLoop(EndpointClaim claim);

}  // namespace portability
