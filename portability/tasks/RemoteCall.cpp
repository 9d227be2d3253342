#include <CoreServices/Multiprocessing.h>

#include "events/EventLoop.h"
#include "tasks/MainRunLoop.h"
#include "tasks/MainThread.h"

// The main thread of most hosts runs a loop that is not the platform's, or none, and would never serve the
// call.
void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext /*context*/) {
    if (portability::isMainThread()) return remoteProc(parameter);
    void* result = nullptr;
    if (portability::runOnEventLoop(remoteProc, parameter, &result)) return result;
    if (portability::runOnMainRunLoop(remoteProc, parameter, &result)) return result;
    return remoteProc(parameter);
}
