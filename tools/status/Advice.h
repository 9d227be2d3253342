// Advice for the user after a failure with a certain number.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel::tools {

/// Returns one or two sentences, also for a number that needs no advice of its own.
std::string statusAdvice(int32_t status);

/// The same for an error code in a reply of the server (client/exceptions/ExceptionTypeNames.h).
std::string errorCodeAdvice(uint32_t errorCode);

/// The same for the type code of an exception that only the client throws.
std::string failureTypeAdvice(uint32_t typeCode);

}  // namespace dovrel::tools
