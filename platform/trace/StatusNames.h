// The names of the platform's status numbers, for logs, traces and tools. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel {

/// The name that the platform's headers give to a status of the kinds OSErr and OSStatus, such as
/// "procNotFound" for -600. Null if the table does not have the number; 0, which is success, has no name.
const char* statusName(int32_t status);

/// The number with what is known about it: "-600 (procNotFound)", "100013 (errno 13)", or the number alone.
/// Throws std::bad_alloc.
std::string statusText(int32_t status);

}  // namespace dovrel
