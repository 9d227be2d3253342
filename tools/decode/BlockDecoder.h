// Decodes structured blocks: transfer objects, byte array lists and blocks with another or no type number.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "serialization/ByteBlock.h"
#include "tools/decode/BlockParts.h"
#include "tools/decode/Decoded.h"

namespace dovrel::tools {

class BlockDecoder {
  public:
    /// Findings go to `result`. `mostBytes` is as for traceDataText. `result` must outlive the decoder.
    BlockDecoder(Decoded& result, uint32_t mostBytes) : result_(result), mostBytes_(mostBytes) {}

    /// Decodes a block that begins at an offset of the input. Returns its header and parts, and the rest that is
    /// damaged. Data that are undamaged blocks are decoded as well, up to a depth of 8 blocks. The items refer
    /// to the bytes.
    std::vector<DecodedItem> decode(ByteView block, uint32_t offset);

    /// Returns what the last decoded block is: "transfer object" and "request, call method".
    const std::string& kind() const { return kind_; }
    const std::string& summary() const { return summary_; }

    /// Returns the name for blocks with the type number.
    static std::string kindText(std::optional<uint32_t> typeNumber);

    /// Returns "type number 9" or "no type number".
    static std::string typeText(std::optional<uint32_t> typeNumber);

  private:
    std::vector<DecodedItem> listItems(const BlockParts& parts, uint32_t offset) const;
    void noteRepeatedParts(const std::vector<DecodedItem>& parts);
    void decodeInnerBlock(DecodedItem& part, bool isInTransferObject);
    std::string describeParts(const BlockParts& block, std::vector<DecodedItem>& parts, uint32_t end);

    Decoded& result_;
    uint32_t mostBytes_;
    uint32_t depth_ = 0;
    std::string kind_;
    std::string summary_;
};

}  // namespace dovrel::tools
