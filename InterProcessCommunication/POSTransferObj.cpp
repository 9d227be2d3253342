#include "InterProcessCommunication/POSTransferObj.h"

#include <cstring>

namespace dovrel {

POSTransferObj::POSTransferObj() {
    writer_.initialize(bytes_, formatVersion_);
}

void POSTransferObj::writeBytes(uint32_t id, const void* bytes, uint32_t length) {
    writer_.writeBytesPart(id, bytes, length);
}

// viewNumber reads the value without allocating an array, but reports a missing field in the same way as
// getPart does, so all payload fields report it alike.
uint32_t POSTransferObj::readUInt32(uint32_t id) {
    attachReader();
    return reader_.viewNumber(id);
}

std::unique_ptr<CPPByteArray> POSTransferObj::readByteArray(uint32_t id) {
    attachReader();
    return std::unique_ptr<CPPByteArray>(reader_.getPart(id));
}

std::string POSTransferObj::readString(uint32_t id) {
    attachReader();
    return reader_.readStringPart(id);
}

ByteBlock POSTransferObj::readBlock(uint32_t id) {
    attachReader();
    const ByteView field = reader_.viewPart(id);
    ByteBlock block;
    if (field.length == 0) return block;
    block.data.reset(new uint8_t[field.length]);
    block.length = field.length;
    std::memcpy(block.data.get(), field.data, field.length);
    return block;
}

void POSTransferObj::copyBytesTo(CPPByteArray& array) const {
    array.setOrThrow(bytes_.data(), bytes_.getSize());
}

void POSTransferObj::copyBytesFrom(const void* bytes, uint32_t length) {
    bytes_.setOrThrow(bytes, length);
}

bool POSTransferObj::hasField(uint32_t id) {
    attachReader();
    return reader_.hasPart(id);
}

uint32_t POSTransferObj::readHeaderField(uint32_t id) {
    attachReader();
    return reader_.readUInt32Part(id);
}

void POSTransferObj::attachReader() {
    if (readerAttached_) return;
    reader_.initialize(&bytes_);
    readerAttached_ = true;
}

}  // namespace dovrel
