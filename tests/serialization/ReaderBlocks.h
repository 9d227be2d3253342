// Blocks and parts for the tests of StructuredByteArrayReader.
#pragma once

#include <memory>
#include <string>

#include "serialization/StructuredByteArrayReader.h"
#include "tests/support/library/Bytes.h"

namespace dovrel::test {

/// The header of a block with type number 8, in hexadecimal.
inline constexpr char kHeader[] = "41 73 41 6B 00 01 00 00 00 08";

/// Returns the bytes of a part as text.
inline std::string partText(const StructuredByteArrayReader& reader, uint32_t tag) {
    const std::unique_ptr<CPPByteArray> part(reader.getPart(tag));
    return toText(*part);
}

}  // namespace dovrel::test
