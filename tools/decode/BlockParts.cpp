#include "tools/decode/BlockParts.h"

#include "platform/text/TextConversions.h"
#include "platform/trace/TraceText.h"
#include "serialization/ByteOrder.h"
#include "serialization/StructuredDataFormat.h"

namespace dovrel::tools {

namespace {

using namespace structuredData;

constexpr uint32_t kLengthOffset = 4;  // in the header of a part

std::string hexByte(uint8_t byte) {
    return numberToText(byte, 16, 2);
}

// Returns the damage of the mark, or nothing.
std::optional<BlockDamage> findMarkDamage(ByteView block) {
    uint8_t mark[kFormatOffset];
    storeBigEndian32(mark, kMagic);
    for (uint32_t i = 0; i < kFormatOffset && i < block.length; ++i) {
        if (block.data[i] != mark[i])
            return BlockDamage{i, "the byte is " + hexByte(block.data[i]) + ", expected " + hexByte(mark[i]) +
                                      "; a structured block begins with 41 73 41 6B"};
    }
    if (block.length < kFormatOffset)
        return BlockDamage{block.length, "the block ends inside its mark 41 73 41 6B"};
    return std::nullopt;
}

std::optional<BlockDamage> findFormatDamage(ByteView block) {
    if (block.length < kTypeOffset)
        return BlockDamage{block.length, "the block ends inside its two format bytes"};
    const uint8_t first = block.data[kFormatOffset];
    const uint8_t second = block.data[kFormatOffset + 1];
    const bool isKnown =
        first == kFormatByte1 && (second == kFormatByte2WithoutType || second == kFormatByte2WithType);
    if (isKnown) return std::nullopt;
    return BlockDamage{kFormatOffset, "the format bytes are " + hexByte(first) + " " + hexByte(second) +
                                          ", expected 00 00 or 00 01"};
}

std::optional<BlockDamage> readHeader(ByteView block, BlockParts& result) {
    if (auto damage = findMarkDamage(block)) return damage;
    if (auto damage = findFormatDamage(block)) return damage;
    if (block.data[kFormatOffset + 1] == kFormatByte2WithoutType) {
        result.headerLength = kPartsOffsetWithoutType;
        return std::nullopt;
    }
    if (block.length < kHeaderSize) return BlockDamage{block.length, "the block ends inside its type number"};
    result.headerLength = kHeaderSize;
    result.typeNumber = loadBigEndian32(block.data + kTypeOffset);
    return std::nullopt;
}

// Reads the part at the offset. Returns the damage if the block does not contain all of it.
std::optional<BlockDamage> readPart(ByteView block, uint32_t offset, BlockParts& result) {
    const uint32_t rest = block.length - offset;
    if (rest < kPartHeaderSize) {
        return BlockDamage{offset, "the header of a part has " + byteCountText(kPartHeaderSize) +
                                       ", but the block has only " + byteCountText(rest) + " more"};
    }
    const uint32_t tag = loadBigEndian32(block.data + offset);
    const uint32_t length = loadBigEndian32(block.data + offset + kLengthOffset);
    if (length > rest - kPartHeaderSize) {
        return BlockDamage{offset + kLengthOffset, "the length of part " + std::to_string(tag) + " is " +
                                                       byteCountText(length) + ", but the block has only " +
                                                       byteCountText(rest - kPartHeaderSize) + " more"};
    }
    result.parts.push_back({tag, offset, {block.data + offset + kPartHeaderSize, length}});
    return std::nullopt;
}

}  // namespace

BlockParts listBlockParts(ByteView block) {
    BlockParts result;
    result.damage = readHeader(block, result);
    result.readableLength = result.headerLength;
    while (!result.damage && result.readableLength < block.length) {
        result.damage = readPart(block, result.readableLength, result);
        if (!result.damage) result.readableLength += kPartHeaderSize + result.parts.back().data.length;
    }
    return result;
}

}  // namespace dovrel::tools
