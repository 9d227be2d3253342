// Sending Apple events from any thread.
#pragma once

#include <CoreServices/AEDataModel.h>

#if defined(__cplusplus)
extern "C" {
#endif

/// An event may carry the port for its reply (typeMachPort). On macOS a send that waits off the main thread
/// needs one; elsewhere it is carried and has no effect.
enum { keyReplyPortAttr = 'repp' };

/// Sends the event and, in the mode kAEWaitReply, waits for the reply at most that many ticks (1/60 s;
/// kAEDefaultTimeout, kNoTimeOut). `reply` may be null; after noErr it is the caller's to dispose of, after
/// an error it is null. Any thread.
///
/// procNotFound: nobody has the address. connectionInvalid: the target went away before it answered.
/// errAETimeout: no answer in time. errAEEventNotHandled: the target has no handler. A handler's own failure
/// is noErr, with keyErrorNumber in the reply.
extern OSStatus AESendMessage(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode,
                              long timeOutInTicks);

#if defined(__cplusplus)
}  // extern "C"
#endif
