// The functions that compiled messages of a macOS image call. They look the method up in this system's
// Objective-C runtime and go on there with all arguments as they were.
#pragma once

#if defined(__cplusplus)
extern "C" {
#endif

/// Receiver and selector are the first two arguments. A message to nil answers 0.
void macho_objc_msgSend(void);

#if defined(__cplusplus)
}
#endif
