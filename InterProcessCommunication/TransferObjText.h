// Transfer objects as readable text for logs and traces: one line per field, with the names from the table of
// commands. The texts are UTF-8. Every function accepts any bytes and throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <string>

#include "InterProcessCommunication/POSCommands.h"
#include "platform/trace/TraceText.h"
#include "serialization/ByteBlock.h"
#include "serialization/CPPByteArray.h"

namespace dovrel {

/// Returns the value of a field in its form: the number, the text in quotes (without the NUL of a name), or
/// what traceDataText returns for `mostBytes`.
std::string fieldText(const POSField& field, ByteView data, uint32_t mostBytes = kMostTraceBytes);

/// Returns the first 4 bytes as a number, least significant byte first. Bytes that the data do not have count
/// as 0.
uint32_t fieldNumber(ByteView data);

/// Returns the lines of a request or a reply. Each line begins with `mark` and ends with a line feed. Fields
/// that the table does not list are omitted, and only the beginning of long data is shown. Bytes that are not
/// a structured block are shown as data. Texts are made readable (TraceText.h) and are on one line.
std::string transferObjText(const CPPByteArray& transferObject, const std::string& mark);

/// Returns the name of the command in a transfer object, or "unknown command".
std::string readCommandName(const CPPByteArray& transferObject);

/// Returns the command of a request and the class or method that the request names, on one line. Contains no
/// other data of the request.
std::string requestSummary(const CPPByteArray& request);

/// Returns an error code of the server and its meaning: "27 (method not found)", "99 (unknown)".
std::string errorCodeText(uint32_t errorCode);

/// Returns the code of the command in a transfer object, or 0.
uint32_t readCommandCode(const CPPByteArray& transferObject);

}  // namespace dovrel
