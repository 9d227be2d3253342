// Decodes a TransferPack.
#pragma once

#include <cstdint>
#include <vector>

#include "serialization/ByteBlock.h"
#include "tools/decode/Decoded.h"

namespace dovrel::tools {

/// Returns whether the bytes have exactly the size of a transfer pack with additional data of the size that
/// they say.
bool hasSizeOfTransferPack(ByteView bytes);

/// Returns the fields of the record, as far as it has them. Adds a problem to `result` if the record is too
/// short, if it has more bytes than it says, or if a token is longer than its place. `mostBytes` is as for
/// traceDataText. The items refer to the bytes.
std::vector<DecodedItem> decodeTransferPack(ByteView record, uint32_t mostBytes, Decoded& result);

}  // namespace dovrel::tools
