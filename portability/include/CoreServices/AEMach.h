// Sending Apple events from any thread.
#pragma once

#include <CoreServices/AEDataModel.h>

#if defined(__cplusplus)
extern "C" {
#endif

/// An event may contain the port for its reply (typeMachPort). On macOS, sending with a wait on a thread
/// other than the main thread needs one. On other systems the port is sent and has no effect.
enum { keyReplyPortAttr = 'repp' };

/// Sends the event. With kAEWaitReply it waits for the reply, at most `timeOutInTicks` ticks (1/60 s; also
/// kAEDefaultTimeout and kNoTimeOut). `reply` may be null. After noErr the caller owns `reply`; after an
/// error it is null. Thread-safe.
///
/// Errors:
/// - procNotFound: no process has the address.
/// - connectionInvalid: the target ended before it replied.
/// - errAETimeout: no reply arrived in time.
/// - errAEEventNotHandled: the target has no handler for the event.
///
/// If the handler returns an error, the result is noErr and the reply contains keyErrorNumber.
extern OSStatus AESendMessage(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode,
                              long timeOutInTicks);

#if defined(__cplusplus)
}  // extern "C"
#endif
