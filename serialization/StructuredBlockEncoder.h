// Encodes a whole structured block at once, for callers that know all its parts. StructuredByteArrayWriter
// writes a block part by part, into any array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "serialization/CPPByteArray.h"
#include "serialization/StructuredDataFormat.h"
#include "serialization/StructuredPart.h"

namespace dovrel {

/// Replaces the content of `target` by a block with the parts in their order. The bytes of the parts must be
/// outside the target. If the block is too long or memory runs out, leaves the target unchanged and throws the
/// StructuredWriteFailedException that StructuredByteArrayWriter throws for a part whose data do not fit.
void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber, const StructuredPart* parts,
                           size_t count);

/// Throws the StructuredWriteFailedException of a part whose data do not fit.
[[noreturn]] void throwStructuredWriteFailure();

/// Returns the size in bytes of a block with the `count` parts. If the block is too long, throws the
/// StructuredWriteFailedException of a part whose data do not fit.
uint32_t measureStructuredBlock(const StructuredPart* parts, size_t count);

/// Stores a block with the `count` parts in their order. `place` must have room for the number of bytes that
/// measureStructuredBlock returns, and must not overlap with the bytes of the parts.
void storeStructuredBlock(uint8_t* place, uint32_t typeNumber, const StructuredPart* parts, size_t count);

/// Replaces the content of `target` by `size` bytes without a value and returns their place. Throws as
/// encodeStructuredBlock does if that is more than a block can have, or if memory runs out.
uint8_t* allocateStructuredBlock(CPPByteArray& target, uint64_t size);

/// Returns the size of the part in the block, and stores it and returns the place after it.
inline uint64_t measurePart(const StructuredPart& part) {
    return uint64_t{structuredData::kPartHeaderSize} + part.getLength();
}
inline uint8_t* storePart(uint8_t* place, const StructuredPart& part) {
    structuredData::storePartHeader(place, part.getTag(), part.getLength());
    return part.copyTo(place + structuredData::kPartHeaderSize);
}

/// Does the same as the first function. It is a template so that the compiler sees each part: then the parts need
/// no memory of their own, which makes it almost twice as fast.
template <class... Parts, std::enable_if_t<(std::is_same_v<Parts, StructuredPart> && ...), int> = 0>
void encodeStructuredBlock(CPPByteArray& target, uint32_t typeNumber, const Parts&... parts) {
    uint8_t* place =
        allocateStructuredBlock(target, (uint64_t{structuredData::kHeaderSize} + ... + measurePart(parts)));
    structuredData::storeBlockHeader(place, typeNumber);
    place += structuredData::kHeaderSize;
    ((place = storePart(place, parts)), ...);
}

}  // namespace dovrel
