// Reads the kernel's list of all processes.
#pragma once

#include <sys/sysctl.h>

#include <cstddef>

namespace dovrel {

/// Stores a new block with the records of all processes in `*procList`, and their number in `*procCount`.
/// `*procList` must be null before the call; the caller frees the block with free. Returns 0 on success. On
/// failure returns the system's error number and leaves `*procList` null. Returns 1 and changes nothing if a
/// pointer is null or `*procList` is not null. Thread-safe.
int GetBSDProcessList(kinfo_proc** procList, size_t* procCount);

/// Aborts the program with a message unless the list and the error agree: a list exists if and only
/// if `err` is 0.
void assertListAgreesWithError(int err, const kinfo_proc* procList);

}  // namespace dovrel
