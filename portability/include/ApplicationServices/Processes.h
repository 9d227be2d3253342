// The Process Manager: processes by serial number.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

enum {
    // Values of lowLongOfPSN when highLongOfPSN is 0
    kNoProcess = 0,
    kSystemProcess = 1,
    kCurrentProcess = 2
};

#if defined(__cplusplus)
extern "C" {
#endif

/// The serial number of the calling process. It stays the same while the process runs and is not given again
/// to another process while the system is up. Any thread.
OSErr GetCurrentProcess(ProcessSerialNumber* pPSN);

/// The process id that belongs to a serial number ({0, kCurrentProcess} is one's own); procNotFound when
/// there is no such process, and `pid` is left alone. Any thread.
OSStatus GetProcessPID(const ProcessSerialNumber* psn, pid_t* pid);

/// The serial number that belongs to a process id; procNotFound when there is no such process. Any thread.
OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* psn);

#if defined(__cplusplus)
}  // extern "C"
#endif
