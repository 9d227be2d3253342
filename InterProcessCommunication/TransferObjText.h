// Transfer objects in readable form, for logs and traces: a line per field, by the table of commands. The
// texts are UTF-8. All bytes are accepted. Everything throws std::bad_alloc.
#pragma once

#include <cstdint>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

/// The lines of a request or a reply, each with `mark` at its beginning and a line feed at its end. Fields
/// that the table does not list are left out, and only the beginning of long data is shown. Bytes that are
/// not a structured block are shown as data. Texts are readable (TraceText.h) and on one line.
std::string transferObjText(const CPPByteArray& transferObject, const std::string& mark);

/// The name of the command in a transfer object, or "unknown command".
std::string commandNameOf(const CPPByteArray& transferObject);

/// The command of a request with the class or the method that it names, on one line. Holds no other data.
std::string requestSummary(const CPPByteArray& request);

/// An error code of the server with its meaning: "27 (method not found)", "99 (unknown)".
std::string errorCodeText(uint32_t errorCode);

/// The code of the command in a transfer object, or 0.
uint32_t commandCodeOf(const CPPByteArray& transferObject);

}  // namespace dovrel
