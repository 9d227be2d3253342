// The platform's window classes: those of GNUstep, and the one call that GNUstep lacks. Its classes are not
// linked, so that a process without alerts never has them in memory; code finds them by name, after
// NSApplicationLoad.
#pragma once

#include_next <AppKit/AppKit.h>

#if defined(__cplusplus)
extern "C" {
#endif

/// Makes the process's application object if there is none, so that alerts can be shown; does not run it. NO
/// without a window system that answers (later calls try again), and on every thread but the main one. To be
/// called inside an autorelease pool. The host's signal dispositions, arguments, locale and working folder
/// are as before afterwards.
BOOL NSApplicationLoad(void);

#if defined(__cplusplus)
}
#endif
