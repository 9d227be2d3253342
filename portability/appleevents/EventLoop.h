// The application event loop as the rest of the layer sees it. Private to the layer.
#pragma once

#include "portability/transport/Endpoint.h"

namespace portability {

/// Runs `function(parameter)` on the thread that is inside RunApplicationEventLoop, between two events, and
/// waits until it has returned; `result` receives what it returned. Called on that very thread it runs at
/// once. Returns false, without having run it and with `result` left alone, if no loop runs, if the loop ends
/// first, or if the loop's thread does not begin it within a second. Any thread; `function` must not throw.
bool runOnEventLoop(void* (*function)(void*), void* parameter, void** result);

/// RunApplicationEventLoop with an endpoint that the caller has claimed: serves it on this thread until
/// QuitApplicationEventLoop, and gives it up. Returns at once while a loop runs already.
void runEventLoop(EndpointClaim claim);

}  // namespace portability
