// Multiprocessing Services: critical regions, semaphores, event groups, preemptive tasks and remote calls.
//
// All functions may be called on any thread. Callers know objects by their identifiers. Functions return
// kMPInvalidIDErr for the identifier of a deleted object. All objects are local to this process.
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

/// A positive Duration is in milliseconds, a negative one in microseconds.
enum {
    kDurationImmediate = 0,
    kDurationForever = 0x7FFFFFFF,
    kDurationMillisecond = 1,
    kDurationMicrosecond = -1
};

enum {
    kMPCreateTaskSuspendedMask = 1 << 0,  // rejected: tasks cannot be created suspended
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

/// Returns whether the services can be used. Always true.
Boolean _MPIsFullyInitialized(void);

// Critical regions are recursive: the owner may enter again, and must exit once for each entry.

OSStatus MPCreateCriticalRegion(MPCriticalRegionID* criticalRegion);

/// Deletes the region, even if a thread is inside it. Threads that wait to enter get kMPDeletedErr.
OSStatus MPDeleteCriticalRegion(MPCriticalRegionID criticalRegion);

/// Enters the region. Returns kMPTimeoutErr if it did not become free in time.
OSStatus MPEnterCriticalRegion(MPCriticalRegionID criticalRegion, Duration timeout);

/// Exits the region. Returns kMPInsufficientResourcesErr if the calling thread is not the owner.
OSStatus MPExitCriticalRegion(MPCriticalRegionID criticalRegion);

/// Creates a counting semaphore. Note the order of the first two arguments.
OSStatus MPCreateSemaphore(MPSemaphoreCount maximumValue, MPSemaphoreCount initialValue,
                           MPSemaphoreID* semaphore);

/// Deletes the semaphore. Threads that wait on it get kMPDeletedErr.
OSStatus MPDeleteSemaphore(MPSemaphoreID semaphore);

/// Takes one unit, and waits for it if necessary. Returns kMPTimeoutErr if none became available in time.
OSStatus MPWaitOnSemaphore(MPSemaphoreID semaphore, Duration timeout);

/// Passes one unit to the thread that has waited longest, or adds it to the semaphore if no thread waits.
/// Returns kMPInsufficientResourcesErr, and changes nothing, if the semaphore is at its maximum.
OSStatus MPSignalSemaphore(MPSemaphoreID semaphore);

#define MPCreateBinarySemaphore(semaphore) MPCreateSemaphore(1, 1, (semaphore))

/// Creates a group of 32 event flags, which are all clear.
OSStatus MPCreateEvent(MPEventID* event);

/// Deletes the group. Threads that wait for it get kMPDeletedErr. This is the usual way to release all
/// waiting threads at once.
OSStatus MPDeleteEvent(MPEventID event);

/// Sets `flags` in the group. If any flag is set afterwards, the thread that has waited longest takes
/// them all.
OSStatus MPSetEvent(MPEventID event, MPEventFlags flags);

/// Waits until any flag is set, then takes all flags and clears the group. `flags` may be null; it is written
/// only on success.
OSStatus MPWaitForEvent(MPEventID event, MPEventFlags* flags, Duration timeout);

/// Starts `entryPoint` on a new preemptive task, which ends when `entryPoint` returns. Callers cannot wait
/// for a task; the task must signal its end itself, for example with a semaphore. A `stackSize` of 0 means
/// the system's default. `task` is written only on success.
///
/// `notifyQueue` must be kInvalidID. Queues are not supported, so any other value returns kMPInvalidIDErr.
/// The termination parameters are for the queue and are not used. Returns kMPInsufficientResourcesErr if no
/// task can be created or `options` contains unsupported bits.
OSStatus MPCreateTask(TaskProc entryPoint, void* parameter, ByteCount stackSize, MPQueueID notifyQueue,
                      void* terminationParameter1, void* terminationParameter2, MPTaskOptions options,
                      MPTaskID* task);

/// Returns whether a task runs preemptively; kInvalidID means the calling thread. Only the main thread
/// does not.
Boolean MPTaskIsPreemptive(MPTaskID task);

/// Runs `remoteProc` on the main thread, waits without a time limit until it has returned, and returns its
/// result. Called on the main thread, it simply calls the procedure. Otherwise the event loop or run loop of the
/// main thread calls it. On macOS the function waits until such a loop runs. On other systems it calls the
/// procedure on the calling thread if no such loop is running, or if the loop does not begin within one second.
void* MPRemoteCall(MPRemoteProcedure remoteProc, void* parameter, MPRemoteContext context);

CF_EXTERN_C_END
