// The names of the platform's status numbers, for logs, traces and tools. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel {

/// Returns the name that the platform's headers define for an OSErr or OSStatus, such as "procNotFound" for
/// -600. Returns null if the table does not contain the number. 0 (success) has no name.
const char* statusName(int32_t status);

/// Returns the number with its name: "-600 (procNotFound)", "100013 (errno 13)". Returns the number alone if
/// it has no name. Throws std::bad_alloc.
std::string statusText(int32_t status);

}  // namespace dovrel
