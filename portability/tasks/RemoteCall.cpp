#include <CoreServices/Multiprocessing.h>

#include "portability/appleevents/EventLoop.h"
#include "portability/posix/MainThread.h"
#include "portability/tasks/MainRunLoop.h"

// Most hosts run another loop on their main thread, or none, which would never serve the call.
void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext /*context*/) {
    if (portability::isMainThread()) return remoteProc(parameter);
    void* result = nullptr;
    if (portability::runOnEventLoop(remoteProc, parameter, &result)) return result;
    if (portability::runOnMainRunLoop(remoteProc, parameter, &result)) return result;
    return remoteProc(parameter);
}
