// Transfer objects in readable form, for logs and traces: a line per field, by the table of commands. Nothing
// that the bytes hold is a failure; running out of memory is std::bad_alloc.
#pragma once

#include <cstdint>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

/// The lines of a request or an answer, each with `mark` in front and a line feed behind. Fields that the
/// table does not list are left out; of long data the beginning is shown. Bytes that are no structured block
/// are shown as they are.
std::string transferObjText(const CPPByteArray& transferObject, const std::string& mark);

/// The name of the command in a transfer object, "unknown command" where it names none.
std::string commandNameOf(const CPPByteArray& transferObject);

/// The code of the command in a transfer object, 0 where it names none.
uint32_t commandCodeOf(const CPPByteArray& transferObject);

}  // namespace dovrel
