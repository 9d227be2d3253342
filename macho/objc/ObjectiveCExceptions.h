// Replacements for the Objective-C runtime's functions that compiled @catch blocks call. They support only
// handlers that catch every exception: `@catch (...)`.
#pragma once

namespace dovrel::macho {

/// `unwindException` is the exception as the unwinder (`_Unwind_RaiseException`) passes it to a handler.
/// Returns the Objective-C object in it, or nil if it was thrown by another language. The exception stays
/// valid until the matching endCatch().
void* beginCatch(void* unwindException);

/// Ends the handler that the last beginCatch() started, and frees its exception.
void endCatch();

}  // namespace dovrel::macho
