// Shows the data of a field in the form that the table of the protocol states.
#pragma once

#include <cstdint>
#include <string>

#include "InterProcessCommunication/POSCommands.h"
#include "tools/decode/Decoded.h"

namespace dovrel::tools {

/// Returns "request", "exception reply" or "normal reply".
std::string messageKindText(uint32_t messageKind);

/// Sets name, value and text of the part, and adds items for the numbers inside fields that hold several. Adds
/// findings to `result` if the data do not have the form of the field: a problem if readers reject them, a note
/// if they do not. `mostBytes` is as for traceDataText.
void describeField(DecodedItem& part, const POSField& field, uint32_t mostBytes, Decoded& result);

}  // namespace dovrel::tools
