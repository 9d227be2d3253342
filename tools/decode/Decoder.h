// Decides what an input is, and decodes it.
#pragma once

#include <cstdint>
#include <optional>

#include "serialization/ByteBlock.h"
#include "tools/decode/Decoded.h"

namespace dovrel::tools {

enum class InputKind { kBlock, kTransferObject, kByteArrayList, kTransferPack };

/// Decodes the bytes. Without a kind, bytes with the beginning of a structured block are one, and bytes of the
/// right size are a transfer pack. If they are neither, that is a problem in the result. With a kind, bytes of
/// another kind are a problem, and the result shows as much as possible of them.
///
/// `mostBytes` is the number of bytes that are shown of each item. The result refers to the bytes.
Decoded decode(ByteView bytes, std::optional<InputKind> kind, uint32_t mostBytes);

}  // namespace dovrel::tools
