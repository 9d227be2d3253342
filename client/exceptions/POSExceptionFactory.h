// From the error code of a server's answer to the exception class that belongs to it.
#pragma once

#include <cstdint>

#include "client/exceptions/POSException.h"

namespace dovrel {

/// A new exception of the class that the server names by the code, carrying the message (copied, may be null)
/// and the code 0; the caller owns it, normally by throwing it.
///
/// Null, and nothing to throw, for every code that names no class, for 36 (a missing library is never
/// reported by an answer), and for 0 and 3, whose texts are chosen by whoever checks the answer.
CPPException* newPOSExceptionForCode(uint32_t code, const char* message);

}  // namespace dovrel
