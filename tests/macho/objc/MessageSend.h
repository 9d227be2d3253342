// The functions that compiled messages of a macOS image call. They look the method up in this system's
// Objective-C runtime and go on there with all arguments as they were.
#pragma once

#if defined(__cplusplus)
extern "C" {
#endif

/// Receiver and selector are the first two arguments. A message to nil answers 0.
void macho_objc_msgSend(void);

/// The same for methods that answer a structure through memory: its place is the first argument.
void macho_objc_msgSend_stret(void);

#if defined(__cplusplus)
}
#endif
