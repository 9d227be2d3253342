#include "tools/decode/Decoder.h"

#include "InterProcessCommunication/POSCommands.h"
#include "serialization/ByteArrayList.h"
#include "serialization/ByteOrder.h"
#include "serialization/StructuredDataFormat.h"
#include "tools/decode/BlockDecoder.h"
#include "tools/decode/BlockParts.h"
#include "tools/decode/TransferPackDecoder.h"

namespace dovrel::tools {

namespace {

bool beginsLikeBlock(ByteView bytes) {
    return bytes.length >= structuredData::kFormatOffset &&
           loadBigEndian32(bytes.data) == structuredData::kMagic;
}

std::optional<InputKind> detectKind(ByteView bytes) {
    if (beginsLikeBlock(bytes)) return InputKind::kBlock;
    if (hasSizeOfTransferPack(bytes)) return InputKind::kTransferPack;
    return std::nullopt;
}

// Returns the type number that a block of the kind must have, or nothing if it may have any.
std::optional<uint32_t> expectedType(InputKind kind) {
    if (kind == InputKind::kTransferObject) return kTransferObjFormatVersion;
    if (kind == InputKind::kByteArrayList) return kByteArrayListType;
    return std::nullopt;
}

void checkType(const DecodedItem& header, std::optional<uint32_t> expected, Decoded& result) {
    if (!expected || header.value == expected) return;
    result.addProblem(header.offset + structuredData::kFormatOffset,
                      "the block has " + BlockDecoder::typeText(header.value) + ", but a " +
                          BlockDecoder::kindText(expected) + " has " + std::to_string(*expected));
}

void decodeBlock(ByteView bytes, InputKind kind, uint32_t mostBytes, Decoded& result) {
    BlockDecoder decoder(result, mostBytes);
    result.items = decoder.decode(bytes, 0);
    result.kind = decoder.kind();
    result.summary = decoder.summary();
    if (listBlockParts(bytes).headerLength != 0) checkType(result.items.front(), expectedType(kind), result);
}

}  // namespace

Decoded decode(ByteView bytes, std::optional<InputKind> kind, uint32_t mostBytes) {
    Decoded result;
    result.size = bytes.length;
    if (!kind) kind = detectKind(bytes);
    if (!kind) {
        result.kind = "unknown kind";
        result.addProblem(0, bytes.length == 0
                                 ? "there are no bytes"
                                 : "this is neither a structured block, which begins with 41 73 "
                                   "41 6B (\"AsAk\"), nor a complete transfer pack; --kind "
                                   "selects a kind");
        return result;
    }
    if (*kind == InputKind::kTransferPack) {
        result.kind = "transfer pack";
        result.items = decodeTransferPack(bytes, mostBytes, result);
    } else {
        decodeBlock(bytes, *kind, mostBytes, result);
    }
    return result;
}

}  // namespace dovrel::tools
