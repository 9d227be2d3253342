// The functions that compiled messages of a macOS image call. They look up the method in this system's
// Objective-C runtime and jump to it with all arguments unchanged.
#pragma once

#if defined(__cplusplus)
extern "C" {
#endif

/// The receiver and the selector are the first two arguments. A message to nil returns 0.
void macho_objc_msgSend(void);

#if defined(__cplusplus)
}
#endif
