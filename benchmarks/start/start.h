/* The measurements of the host and of its peer. */
#ifndef DOVREL_BENCHMARKS_START_H
#define DOVREL_BENCHMARKS_START_H

/** Returns the processor time of this process since exec, in microseconds. */
double processorTime(void);

/** Returns the resident memory in KiB. */
long residentMemory(void);

/** Returns the number of executables and libraries that are mapped. */
int mappedLibraries(void);

/** Writes the reason to standard error and ends the process with a failure. */
void refuse(const char* reason);

#endif
