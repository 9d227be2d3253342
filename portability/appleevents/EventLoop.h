// The interface of the application event loop to the rest of the layer. Private to the layer.
#pragma once

#include "portability/transport/Endpoint.h"

namespace portability {

/// Runs `function(parameter)` on the thread that is inside RunApplicationEventLoop, between two events, and
/// waits until it has returned. Writes its return value to `result`. If the caller is on that thread, the
/// function runs at once. Thread-safe. `function` must not throw.
///
/// Returns false, without running the function and without changing `result`, in these cases:
/// - No loop is running.
/// - The loop ends before the call starts.
/// - The call has not started after one second.
bool runOnEventLoop(void* (*function)(void*), void* parameter, void** result);

/// Runs the loop of RunApplicationEventLoop with an endpoint that the caller has claimed. Handles the
/// endpoint's requests on this thread until QuitApplicationEventLoop is called, and then closes the endpoint.
/// Returns at once if a loop is already running.
void runEventLoop(EndpointClaim claim);

}  // namespace portability
