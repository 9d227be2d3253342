#include "tools/decode/BlockDecoder.h"

#include <iterator>
#include <set>

#include "InterProcessCommunication/POSCommands.h"
#include "platform/trace/TraceText.h"
#include "serialization/ByteArrayList.h"
#include "serialization/StructuredDataFormat.h"
#include "tools/decode/FieldNames.h"
#include "tools/decode/ListElements.h"

namespace dovrel::tools {

namespace {

// Blocks in blocks that are deeper than in any real message are shown as data.
constexpr uint32_t kDeepestBlock = 8;

DecodedItem makeHeaderItem(const BlockParts& parts, ByteView block, uint32_t offset) {
    DecodedItem item;
    item.offset = offset;
    item.length = parts.headerLength;
    item.name = "header";
    item.value = parts.typeNumber;
    item.text = "structured block, " + BlockDecoder::typeText(parts.typeNumber);
    item.data = {block.data, parts.headerLength};
    return item;
}

DecodedItem makeRestItem(ByteView block, uint32_t readableLength, uint32_t offset, uint32_t mostBytes) {
    DecodedItem item;
    item.offset = offset + readableLength;
    item.length = block.length - readableLength;
    item.name = "unreadable rest";
    item.data = {block.data + readableLength, item.length};
    item.text = traceDataText(item.data.data, item.data.length, mostBytes);
    return item;
}

}  // namespace

std::string BlockDecoder::kindText(std::optional<uint32_t> typeNumber) {
    if (typeNumber == kTransferObjFormatVersion) return "transfer object";
    return typeNumber == kByteArrayListType ? "byte array list" : "structured block";
}

std::string BlockDecoder::typeText(std::optional<uint32_t> typeNumber) {
    return typeNumber ? "type number " + std::to_string(*typeNumber) : "no type number";
}

std::vector<DecodedItem> BlockDecoder::decode(ByteView block, uint32_t offset) {
    ++depth_;
    const BlockParts parts = listBlockParts(block);
    std::vector<DecodedItem> items;
    if (parts.headerLength != 0) items.push_back(makeHeaderItem(parts, block, offset));

    std::vector<DecodedItem> partItems = listItems(parts, offset);
    noteRepeatedParts(partItems);
    const std::string summary = describeParts(parts, partItems, offset + parts.readableLength);
    for (DecodedItem& part : partItems)
        decodeInnerBlock(part, parts.typeNumber == kTransferObjFormatVersion);
    items.insert(items.end(), std::make_move_iterator(partItems.begin()),
                 std::make_move_iterator(partItems.end()));

    if (parts.damage) {
        result_.addProblem(offset + parts.damage->offset, parts.damage->reason);
        if (parts.readableLength < block.length)
            items.push_back(makeRestItem(block, parts.readableLength, offset, mostBytes_));
    }
    kind_ = kindText(parts.typeNumber);
    summary_ = summary;
    --depth_;
    return items;
}

std::vector<DecodedItem> BlockDecoder::listItems(const BlockParts& parts, uint32_t offset) const {
    std::vector<DecodedItem> items;
    for (const BlockPart& part : parts.parts) {
        DecodedItem item;
        item.offset = offset + part.offset;
        item.length = structuredData::kPartHeaderSize + part.data.length;
        item.number = part.tag;
        item.name = "part";
        item.data = part.data;
        item.text = traceDataText(part.data.data, part.data.length, mostBytes_);
        items.push_back(item);
    }
    return items;
}

void BlockDecoder::noteRepeatedParts(const std::vector<DecodedItem>& parts) {
    std::set<uint32_t> tags;
    for (const DecodedItem& part : parts) {
        if (!tags.insert(*part.number).second)
            result_.addNote(part.offset, "part " + std::to_string(*part.number) +
                                             " occurs again; readers use the first one");
    }
}

std::string BlockDecoder::describeParts(const BlockParts& block, std::vector<DecodedItem>& parts,
                                        uint32_t end) {
    const bool isComplete = !block.damage;
    if (block.typeNumber == kTransferObjFormatVersion)
        return describeFields(parts, end, isComplete, mostBytes_, result_);
    if (block.typeNumber == kByteArrayListType) return describeElements(parts, end, isComplete, result_);
    return block.headerLength != 0 ? typeText(block.typeNumber) : "";
}

void BlockDecoder::decodeInnerBlock(DecodedItem& part, bool isInTransferObject) {
    if (depth_ == kDeepestBlock || !part.items.empty()) return;
    const uint32_t dataOffset = part.offset + structuredData::kPartHeaderSize;
    const bool isList = isInTransferObject && isClassList(part);
    // The data of other parts may begin like a block by chance.
    if (!isList && listBlockParts(part.data).damage) return;
    part.items = decode(part.data, dataOffset);
    part.text = byteCountText(part.data.length) + ": " + kind_ + (summary_.empty() ? "" : ", " + summary_);
    if (!isList) return;
    if (kind_ != kindText(kByteArrayListType))
        result_.addProblem(part.offset, "the class list is not a byte array list");
    checkClassList(part.items, result_);
}

}  // namespace dovrel::tools
