// Gives the parts of a transfer object the names and forms of the protocol.
#pragma once

#include <cstdint>

#include "tools/decode/Decoded.h"

namespace dovrel::tools {

/// Sets the names, values and texts of the parts of a transfer object, and adds items for the numbers inside
/// fields that hold several. Adds findings to `result`:
///
/// - problems: fields that are missing or do not have the form of the table, an unknown command in a request,
/// - notes: fields that do not belong to the command, numbers that do not have 4 bytes.
///
/// `mostBytes` is as for traceDataText. `end` is the offset after the last part. Set `isComplete` to false if the
/// block is damaged: then no field counts as missing. Returns a summary such as "request, call method".
std::string describeFields(std::vector<DecodedItem>& parts, uint32_t end, bool isComplete, uint32_t mostBytes,
                           Decoded& result);

/// Returns whether the part is the class list, whose data are a byte array list of identifiers.
bool isClassList(const DecodedItem& part);

/// Adds a problem for every element of a decoded class list that is not an identifier.
void checkClassList(const std::vector<DecodedItem>& elements, Decoded& result);

}  // namespace dovrel::tools
