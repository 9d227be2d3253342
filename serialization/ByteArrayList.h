// Byte array lists: an ordered list of byte arrays as one structured block.
//
// The block has the type number 8. The part with the tag 0 holds the number of elements (32 bits,
// little-endian), element i the part with the tag 5 + 2 i.
#pragma once

#include <cstdint>
#include <vector>

#include "serialization/CPPByteArray.h"
#include "serialization/Identifiers.h"
#include "serialization/StructuredDataReader.h"

namespace dovrel {

constexpr uint32_t kByteArrayListType = 8;

/// Writes the block at the beginning of the target, normally an empty CPPExpandingByteArray. Fails as
/// StructuredByteArrayWriter does.
void writeByteArrayList(const std::vector<CPPByteArray>& list, CPPByteArray& target);
void writeByteArrayList(const std::vector<CPPClassID>& list, CPPByteArray& target);

/// Replaces the list by the elements in the block. Fails as the reader does, and then holds the elements
/// before the one that is missing; nothing is reserved from a count that no part backs.
void readByteArrayList(const StructuredDataReader& reader, std::vector<CPPByteArray>& list);

/// The same for a block in a byte array. Fails as StructuredByteArrayReader does.
void readByteArrayList(const CPPByteArray& block, std::vector<CPPByteArray>& list);

}  // namespace dovrel
