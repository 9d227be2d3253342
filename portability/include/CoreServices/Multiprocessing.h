// Multiprocessing Services: critical regions, semaphores, event groups, preemptive tasks and remote calls.
//
// Every call may be made on any thread. Objects are known by their identifiers; an identifier whose object
// was deleted answers kMPInvalidIDErr from then on. All objects live in this process only.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/MacTypes.h>

typedef struct OpaqueMPTaskID* MPTaskID;
typedef struct OpaqueMPQueueID* MPQueueID;
typedef struct OpaqueMPSemaphoreID* MPSemaphoreID;
typedef struct OpaqueMPCriticalRegionID* MPCriticalRegionID;
typedef struct OpaqueMPEventID* MPEventID;

typedef ItemCount MPSemaphoreCount;
typedef UInt32 MPEventFlags;
typedef OptionBits MPTaskOptions;
typedef UInt8 MPRemoteContext;

/// A Duration above 0 counts milliseconds, one below 0 microseconds.
enum {
    kDurationImmediate = 0,
    kDurationForever = 0x7FFFFFFF,
    kDurationMillisecond = 1,
    kDurationMicrosecond = -1
};

enum {
    kMPCreateTaskSuspendedMask = 1 << 0,  // refused: no task can be started suspended
    kMPCreateTaskTakesAllExceptionsMask = 1 << 1,
    kMPCreateTaskNotDebuggableMask = 1 << 2
};

enum {
    kMPAnyRemoteContext = 0,
    kMPOwningProcessRemoteContext = 1,
    kMPInterruptRemoteContext = 2,
    kMPAsyncInterruptRemoteContext = 3
};

typedef OSStatus (*TaskProc)(void* parameter);
typedef void* (*MPRemoteProcedure)(void* parameter);

CF_EXTERN_C_BEGIN

/// Whether the services can be used; always true.
Boolean _MPIsFullyInitialized(void);

// Critical regions are recursive: the owner may enter again, and each entry needs its own exit.

OSStatus MPCreateCriticalRegion(MPCriticalRegionID* criticalRegion);

/// Ends the region, also an occupied one. Whoever waits to enter gets kMPDeletedErr.
OSStatus MPDeleteCriticalRegion(MPCriticalRegionID criticalRegion);

/// kMPTimeoutErr when the region did not become free in time.
OSStatus MPEnterCriticalRegion(MPCriticalRegionID criticalRegion, Duration timeout);

/// kMPInsufficientResourcesErr when the calling thread is not the owner.
OSStatus MPExitCriticalRegion(MPCriticalRegionID criticalRegion);

/// A counting semaphore; mind the order of the first two arguments.
OSStatus MPCreateSemaphore(MPSemaphoreCount maximumValue, MPSemaphoreCount initialValue,
                           MPSemaphoreID* semaphore);

/// Ends the semaphore. Whoever waits on it gets kMPDeletedErr.
OSStatus MPDeleteSemaphore(MPSemaphoreID semaphore);

/// Takes one unit, waiting for it if need be; kMPTimeoutErr when none came in time.
OSStatus MPWaitOnSemaphore(MPSemaphoreID semaphore, Duration timeout);

/// Gives one unit to the thread that has waited longest, or keeps it; kMPInsufficientResourcesErr at the
/// maximum, which changes nothing.
OSStatus MPSignalSemaphore(MPSemaphoreID semaphore);

#define MPCreateBinarySemaphore(semaphore) MPCreateSemaphore(1, 1, (semaphore))

/// A group of 32 event flags, all clear.
OSStatus MPCreateEvent(MPEventID* event);

/// Ends the group. Whoever waits for it gets kMPDeletedErr, which is the usual way to release all waiters at
/// once.
OSStatus MPDeleteEvent(MPEventID event);

/// Adds `flags` to the group; if any is set then, the thread that has waited longest takes them all.
OSStatus MPSetEvent(MPEventID event, MPEventFlags flags);

/// Takes all flags as soon as any is set, and clears the group. `flags` may be null; it is written on success
/// only.
OSStatus MPWaitForEvent(MPEventID event, MPEventFlags* flags, Duration timeout);

/// Starts `entryPoint` on a preemptive task of its own, which ends when it returns. Nobody can wait for a
/// task; let it signal something. A `stackSize` of 0 means the system's default. `notifyQueue` must be
/// kInvalidID (no queues here, so any other answers kMPInvalidIDErr); the termination parameters, meant for
/// it, are not used. kMPInsufficientResourcesErr when no task can be made or `options` has bits that are not
/// supported. `task` is written on success only.
OSStatus MPCreateTask(TaskProc entryPoint, void* parameter, ByteCount stackSize, MPQueueID notifyQueue,
                      void* terminationParameter1, void* terminationParameter2, MPTaskOptions options,
                      MPTaskID* task);

/// Whether a task (kInvalidID: the calling thread) runs preemptively: true everywhere but on the main thread.
Boolean MPTaskIsPreemptive(MPTaskID task);

/// Runs `remoteProc` on the main thread and answers its result, however long it takes. The main thread's
/// event loop or run loop serves the call, so it must be running.
void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext context);

CF_EXTERN_C_END
