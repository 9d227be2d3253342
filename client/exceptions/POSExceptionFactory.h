// Creates the exception for the error code in a server's reply.
#pragma once

#include <cstdint>

#include "client/exceptions/POSException.h"

namespace dovrel {

/// Returns a new exception of the class that belongs to the code. It has the code 0 and a copy of the
/// message, which may be null. The caller owns the exception, and normally throws it.
///
/// Returns null if the code belongs to no class, and also for 36, 0 and 3. A reply with 36 (missing library)
/// never leads to an exception. For 0 and 3 the code that checks the reply chooses the exception itself.
CPPException* newPOSExceptionForCode(uint32_t code, const char* message);

}  // namespace dovrel
