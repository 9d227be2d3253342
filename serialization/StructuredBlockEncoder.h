// Encodes a whole structured block at once, for callers that know all its parts. StructuredByteArrayWriter
// writes a block part by part, into any array.
#pragma once

#include <cstddef>
#include <initializer_list>

#include "serialization/CPPByteArray.h"
#include "serialization/StructuredPart.h"

namespace dovrel {

/// Replaces the content of `target` by a block with the parts in their order. The bytes of the parts must be
/// outside the target. If the block is too long or memory runs out, leaves the target unchanged and throws the
/// StructuredWriteFailedException that StructuredByteArrayWriter throws for a part whose data do not fit.
void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber,
                           std::initializer_list<StructuredPart> parts);
void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber, const StructuredPart* parts,
                           size_t count);

/// Returns the size in bytes of a block with the `count` parts. If the block is too long, throws the
/// StructuredWriteFailedException of a part whose data do not fit.
uint32_t measureStructuredBlock(const StructuredPart* parts, size_t count);

/// Stores a block with the `count` parts in their order. `place` must have room for the number of bytes that
/// measureStructuredBlock returns, and must not overlap with the bytes of the parts.
void storeStructuredBlock(uint8_t* place, uint32_t typeNumber, const StructuredPart* parts, size_t count);

}  // namespace dovrel
