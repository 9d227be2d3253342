#include <CoreServices/Multiprocessing.h>

#include "portability/appleevents/EventLoop.h"
#include "portability/posix/MainThread.h"
#include "portability/tasks/MainRunLoop.h"

// Runs the procedure on the main thread if a loop there can call it, and otherwise on this thread. Most hosts
// run another loop on their main thread, or none, which would never call it.
void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext /*context*/) {
    if (portability::isMainThread()) return remoteProc(parameter);
    void* result = nullptr;
    if (portability::runOnEventLoop(remoteProc, parameter, &result)) return result;
    if (portability::runOnMainRunLoop(remoteProc, parameter, &result)) return result;
    return remoteProc(parameter);
}
