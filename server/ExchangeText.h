// Transfer objects in readable form, for the log: a line per field, by the table of commands.
#pragma once

#include <string>

#include "server/Answer.h"

namespace merrowd {

/// The lines of a request or an answer, each with `mark` in front and a line feed behind. Fields that the
/// table does not list are left out; of long data the beginning is shown. Bytes that are no structured block
/// are shown as they are.
std::string exchangeText(const CPPByteArray& transferObject, const std::string& mark);

/// The name of the command in a transfer object, "unknown command" where it names none.
std::string commandNameOf(const CPPByteArray& transferObject);

/// The code of the command in a transfer object, 0 where it names none.
uint32_t commandCodeOf(const CPPByteArray& transferObject);

}  // namespace merrowd
