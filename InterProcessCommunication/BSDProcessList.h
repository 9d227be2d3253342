// The kernel's list of all processes.
#pragma once

#include <sys/sysctl.h>

#include <cstddef>

namespace dovrel {

/// Puts a new block with the records of all processes into `*procList`, which has to be null before, and
/// their number into `*procCount`. The caller releases the block with free. Returns 0, else the system's
/// error number and no block; 1, with nothing changed, when a pointer is null or the list holds a block
/// already. Any thread.
int GetBSDProcessList(kinfo_proc** procList, size_t* procCount);

/// Ends the program with a message unless a list is there exactly when there is no error.
void assertListAgreesWithError(int err, const kinfo_proc* procList);

}  // namespace dovrel
