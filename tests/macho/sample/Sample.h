// A small bundle for macOS that tests of the loader run; each function does one thing that a loader can get
// wrong.
#pragma once

#include <stdint.h>

#if defined(__cplusplus)
extern "C" {
#endif

// Those that answer an int answer 0, or the number of the line in the sample that was not true.

/// Objects that are made before main.
int Sample_Initialisers(void);

/// Exceptions thrown and caught in all kinds of frames; destructors on the way.
int Sample_Exceptions(void);

/// Catches what the function throws, and answers 1; 0 where it throws nothing.
int Sample_CatchAll(void (*function)(void));

/// Exceptions that the C++ library throws.
int Sample_LibraryExceptions(void);

/// A mutex, as the compiler initialised it.
int Sample_Mutex(void);

/// errno and open flags. There has to be a link of the name "link" in the folder, and nothing else.
int Sample_ErrorNumbers(const char* folder);

/// Size of a file by two system calls.
int64_t Sample_FileSize(const char* path);

/// When the file was changed, in seconds since 1904: a field of a packed structure that the platform fills.
uint32_t Sample_ModificationSeconds(const char* path);

/// Messages, own classes with variables, constant strings, exceptions.
int Sample_ObjectiveC(void);

#if defined(__cplusplus)
}
#endif
