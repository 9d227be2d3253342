// GNUstep's window classes in place of the portability layer's alerts, for the one program that shows alerts
// with them.
#pragma once
#pragma GCC system_header

#import GNUSTEP_APPKIT

#if defined(__cplusplus)
extern "C" {
#endif

/// Makes the process's application object. NO if there is no window system.
BOOL NSApplicationLoad(void);

#if defined(__cplusplus)
}
#endif
