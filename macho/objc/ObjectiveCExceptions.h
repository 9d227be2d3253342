// The functions that code with @catch calls, for handlers that catch all exceptions.
#pragma once

namespace dovrel::macho {

/// Returns the exception object of an exception of the unwinder, or nil for exceptions of other languages.
/// Keeps the exception until the matching endCatch().
void* beginCatch(void* unwindException);

/// Ends the handler and frees the exception.
void endCatch();

}  // namespace dovrel::macho
