// Selects GNUstep's window classes instead of the portability layer's alerts,
// for the one program that uses them.
#pragma once
#pragma GCC system_header

#import GNUSTEP_APPKIT

#if defined(__cplusplus)
extern "C" {
#endif

/// Creates the process's application object. Returns NO if there is no window system.
BOOL NSApplicationLoad(void);

#if defined(__cplusplus)
}
#endif
