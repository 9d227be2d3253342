// What code that catches Objective-C exceptions calls, for the kind of handler that catches them all.
#pragma once

namespace dovrel::macho {

/// The exception object of an exception of the unwinder; nil for exceptions of another language. Keeps the
/// exception until the matching call below.
void* beginCatch(void* unwindException);

/// Ends the handler and the exception.
void endCatch();

}  // namespace dovrel::macho
