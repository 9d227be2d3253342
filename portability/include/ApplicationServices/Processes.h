// The Process Manager: processes by serial number.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

enum {
    // Values of lowLongOfPSN if highLongOfPSN is 0
    kNoProcess = 0,
    kSystemProcess = 1,
    kCurrentProcess = 2
};

#if defined(__cplusplus)
extern "C" {
#endif

/// Writes the serial number of the calling process to `pPSN`. It stays the same while the process runs, and
/// no other process receives it before the system restarts. Thread-safe.
OSErr GetCurrentProcess(ProcessSerialNumber* pPSN);

/// Writes the process id of a serial number to `pid`. {0, kCurrentProcess} is the calling process. Returns
/// procNotFound, and leaves `pid` unchanged, if there is no such process. Thread-safe.
OSStatus GetProcessPID(const ProcessSerialNumber* psn, pid_t* pid);

/// Writes the serial number of a process id to `psn`. Returns procNotFound if there is no such
/// process. Thread-safe.
OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* psn);

#if defined(__cplusplus)
}  // extern "C"
#endif
