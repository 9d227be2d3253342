// Byte array lists: an ordered list of byte arrays in one structured block.
//
// The block has the type number 8. The part with the tag 0 contains the number of elements (32 bits,
// little-endian). The part with the tag 5 + 2 i contains element i.
#pragma once

#include <cstdint>
#include <vector>

#include "serialization/CPPByteArray.h"
#include "serialization/Identifiers.h"
#include "serialization/StructuredDataReader.h"

namespace dovrel {

constexpr uint32_t kByteArrayListType = 8;
constexpr uint32_t kByteArrayListCountTag = 0;

/// Returns the tag of an element. Does not overflow for any existing part, because no block is large enough for
/// that many parts.
constexpr uint32_t byteArrayListElementTag(uint32_t index) {
    return 5 + 2 * index;
}

/// Writes the block at the beginning of `target`, which is normally an empty CPPExpandingByteArray. Throws
/// what StructuredByteArrayWriter throws.
void writeByteArrayList(const std::vector<CPPByteArray>& list, CPPByteArray& target);
void writeByteArrayList(const std::vector<CPPClassID>& list, CPPByteArray& target);

/// Replaces the content of `list` by the elements of the block. Throws what the reader throws. If an element
/// is missing, `list` then contains the elements before it. The count in the block is not trusted: no memory
/// is reserved for it.
void readByteArrayList(const StructuredDataReader& reader, std::vector<CPPByteArray>& list);

/// Does the same for a block in a byte array. Throws what StructuredByteArrayReader throws.
void readByteArrayList(const CPPByteArray& block, std::vector<CPPByteArray>& list);

}  // namespace dovrel
