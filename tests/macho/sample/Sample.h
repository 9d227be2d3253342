// A small bundle for macOS that the loader's tests run. Each function does one
// thing that a loader can get wrong.
#pragma once

#include <stdint.h>

#if defined(__cplusplus)
extern "C" {
#endif

// Functions that return an int return 0 on success, or the line number of the failed check in the sample.

/// Checks objects that are constructed before main.
int Sample_Initialisers(void);

/// Throws and catches exceptions in all kinds of frames, with destructors in between.
int Sample_Exceptions(void);

/// Calls the function and catches every exception. Returns 1 if it threw one; otherwise 0.
int Sample_CatchAll(void (*function)(void));

/// Checks exceptions that the C++ library throws.
int Sample_LibraryExceptions(void);

/// Uses a mutex that the compiler initialised.
int Sample_Mutex(void);

/// Checks errno and open flags. The folder must contain a symbolic link with
/// the name "link", and nothing else.
int Sample_ErrorNumbers(const char* folder);

/// Returns the size of a file, read with two system calls.
int64_t Sample_FileSize(const char* path);

/// Returns when the file was changed, in seconds since 1904. The platform
/// fills a field of a packed structure.
uint32_t Sample_ModificationSeconds(const char* path);

/// Checks messages, own classes with variables, constant strings and exceptions.
int Sample_ObjectiveC(void);

#if defined(__cplusplus)
}
#endif
