#include "tools/decode/TransferPackDecoder.h"

#include <algorithm>

#include "InterProcessCommunication/TransferPack.h"
#include "platform/trace/TraceText.h"
#include "serialization/ByteOrder.h"

namespace dovrel::tools {

namespace {

ByteView bytesAt(ByteView record, uint32_t offset, uint32_t length) {
    return {record.data + offset, std::min(length, record.length - offset)};
}

DecodedItem makeItem(ByteView record, const char* name, uint32_t offset, uint32_t length,
                     uint32_t mostBytes) {
    DecodedItem item;
    item.offset = offset;
    item.data = bytesAt(record, offset, length);
    item.length = item.data.length;
    item.name = name;
    item.text = traceDataText(item.data.data, item.data.length, mostBytes);
    return item;
}

// Shows the token without its length and without the bytes after it.
void describeToken(DecodedItem& item, uint32_t mostBytes, Decoded& result) {
    const uint32_t length = item.data.data[0];
    const uint32_t place = item.data.length - 1;
    if (length > place) {
        result.addProblem(item.offset, std::string(item.name) + " has " + byteCountText(length) +
                                           ", but there is room for " + std::to_string(place));
    }
    item.data = bytesAt(item.data, 1, length);
    item.text = traceDataText(item.data.data, item.data.length, mostBytes);
}

void describeField(DecodedItem& item, const TransferPackField& field, uint32_t mostBytes, Decoded& result) {
    if (field.form == TransferPackForm::kToken) return describeToken(item, mostBytes, result);
    if (field.form == TransferPackForm::kNumber) {
        item.value = loadLittleEndian16(item.data.data);
        item.text = std::to_string(*item.value);
    }
}

uint32_t additionalSize(ByteView record) {
    return loadLittleEndian16(record.data + packField::kAddDataSize.offset);
}

void addAdditionalData(ByteView record, uint32_t mostBytes, Decoded& result,
                       std::vector<DecodedItem>& items) {
    const uint32_t size = additionalSize(record);
    const uint32_t rest = record.length - TransferPack::kFixedSize;
    if (size != 0) {
        items.push_back(
            makeItem(record, "additional data", TransferPack::kFixedSize, std::min(size, rest), mostBytes));
    }
    if (size > rest) {
        result.addProblem(record.length, "the record ends after " + std::to_string(rest) + " of the " +
                                             byteCountText(size) + " of additional data");
    }
    if (size < rest) {
        const uint32_t end = TransferPack::kFixedSize + size;
        items.push_back(makeItem(record, "bytes after the end", end, rest - size, mostBytes));
        result.addProblem(end, "the record ends here, but " + byteCountText(rest - size) + " follow");
    }
}

}  // namespace

bool hasSizeOfTransferPack(ByteView bytes) {
    return bytes.length >= TransferPack::kFixedSize &&
           bytes.length - TransferPack::kFixedSize == additionalSize(bytes);
}

std::vector<DecodedItem> decodeTransferPack(ByteView record, uint32_t mostBytes, Decoded& result) {
    std::vector<DecodedItem> items;
    for (const TransferPackField& field : kTransferPackFields) {
        if (field.offset >= record.length) break;
        DecodedItem item = makeItem(record, field.name, field.offset, field.length, mostBytes);
        if (item.length == field.length) describeField(item, field, mostBytes, result);
        items.push_back(item);
    }
    if (record.length >= TransferPack::kFixedSize) {
        addAdditionalData(record, mostBytes, result, items);
    } else {
        result.addProblem(record.length, "the record ends here, but a transfer pack has at least " +
                                             byteCountText(TransferPack::kFixedSize));
    }
    return items;
}

}  // namespace dovrel::tools
