// What type codes and error codes mean, in a few English words for logs and traces. Users read the texts of
// the multi-language table instead. Any thread.
#pragma once

#include <cstdint>

namespace dovrel {

/// The meaning of a class's type code, such as "method not found" for 27. Null if no class has the code.
const char* exceptionTypeName(uint32_t typeCode);

/// The meaning of an error code in an answer of the server. Null for codes that are not known. Differs from
/// exceptionTypeName where a number has two meanings (3) or only classes of the client have it (2, 4, 5, 44).
const char* serverErrorName(uint32_t errorCode);

}  // namespace dovrel
