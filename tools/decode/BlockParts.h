// Lists the parts of a structured block in their order and with their offsets. The readers of the library find
// parts by their tags and say only that a block is damaged. This function also says where.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "serialization/ByteBlock.h"

namespace dovrel::tools {

struct BlockPart {
    uint32_t tag;
    uint32_t offset;  ///< of the part's header in the block
    ByteView data;
};

struct BlockDamage {
    uint32_t offset;  ///< in the block
    std::string reason;
};

struct BlockParts {
    uint32_t headerLength = 0;           ///< 0 if the header is damaged
    std::optional<uint32_t> typeNumber;  ///< nothing in a block without one
    std::vector<BlockPart> parts;        ///< those before the damage
    std::optional<BlockDamage> damage;   ///< nothing if the reader of the library accepts the block
    uint32_t readableLength = 0;         ///< the number of bytes before the part that is damaged
};

/// Reads the header and the headers of all parts. The results refer to the bytes.
BlockParts listBlockParts(ByteView block);

}  // namespace dovrel::tools
