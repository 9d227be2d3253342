#include <CoreServices/Multiprocessing.h>
#import <Foundation/Foundation.h>

#include "events/EventLoop.h"
#include "tasks/MainThread.h"
#include "tasks/WindowSystem.h"

// A procedure on its way to the run loop of the main thread.
@interface PortabilityRemoteCall : NSObject {
    MPRemoteProcedure procedure;
    void* parameter;
    void* result;
}
- (id)initWithProcedure:(MPRemoteProcedure)aProcedure parameter:(void*)aParameter;
- (void)run;
- (void*)result;
@end

@implementation PortabilityRemoteCall

- (id)initWithProcedure:(MPRemoteProcedure)aProcedure parameter:(void*)aParameter {
    self = [super init];
    if (self != nil) {
        procedure = aProcedure;
        parameter = aParameter;
    }
    return self;
}

- (void)run {
    result = procedure(parameter);
}

- (void*)result {
    return result;
}

@end

namespace {

void* callOnRunLoop(MPRemoteProcedure procedure, void* parameter) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    PortabilityRemoteCall* call = [[PortabilityRemoteCall alloc] initWithProcedure:procedure
                                                                         parameter:parameter];
    [call performSelectorOnMainThread:@selector(run) withObject:nil waitUntilDone:YES];
    void* result = [call result];
    [call release];
    [pool release];
    return result;
}

}  // namespace

void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext /*context*/) {
    if (portability::isMainThread()) return remoteProc(parameter);
    void* result = nullptr;
    if (portability::runOnEventLoop(remoteProc, parameter, &result)) return result;
    // Without windows there is no run loop either, and nothing would ever answer the call.
    if (!portability::windowSystemAnswers()) return remoteProc(parameter);
    return callOnRunLoop(remoteProc, parameter);
}
