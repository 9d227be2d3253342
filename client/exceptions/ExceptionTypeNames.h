// Names of type codes and error codes, in a few English words, for logs and traces. Alerts use the texts of
// the multi-language table instead. Thread-safe.
#pragma once

#include <cstdint>

namespace dovrel {

/// Returns the meaning of a class's type code, such as "method not found" for 27. Returns null if no class
/// has the code.
const char* exceptionTypeName(uint32_t typeCode);

/// Returns the meaning of an error code in a server's reply, or null if the code is unknown. The result
/// differs from exceptionTypeName for 3, which has two meanings, and for 2, 4, 5 and 44, which only classes
/// of the client use.
const char* serverErrorName(uint32_t errorCode);

}  // namespace dovrel
