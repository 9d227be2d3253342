#include "InterProcessCommunication/POSTransferObj.h"

#include <cstring>
#include <new>
#include <utility>

#include "serialization/StructuredDataFormat.h"

namespace dovrel {

namespace {

// The size from which it costs less to move the bytes of an array than to copy them to a second array.
constexpr uint32_t kLargeArray = 4096;

ByteBlock newBlock(uint32_t length) {
    ByteBlock block;
    if (length == 0) return block;
    block.data.reset(new uint8_t[length]);
    block.length = length;
    return block;
}

ByteBlock copyToBlock(const uint8_t* bytes, uint32_t length) {
    ByteBlock block = newBlock(length);
    if (length != 0) std::memcpy(block.data.get(), bytes, length);
    return block;
}

}  // namespace

POSTransferObj::POSTransferObj() {
    writer_.initialize(bytes_, formatVersion_);
}

POSTransferObj::POSTransferObj(ByteBlock received) : received_(std::move(received)) {
    receivedArray_.borrow(received_.data.get(), received_.length);
}

void POSTransferObj::writeByteArray(uint32_t id, CPPByteArray&& array) {
    const CPPByteArray& constant = array;
    if (array.getSize() < kLargeArray || array.getSize() < bytes().getSize())
        return writeByteArray(id, constant);
    CPPByteArray start;
    uint8_t* const block = start.setUninitialized(bytes_.getSize() + structuredData::kPartHeaderSize);
    if (block == nullptr) return writeByteArray(id, constant);
    if (bytes_.getSize() != 0) std::memcpy(block, bytes_.data(), bytes_.getSize());
    structuredData::storePartHeader(block + bytes_.getSize(), id, array.getSize());
    if (!array.insertAtStart(start.data(), start.getSize())) return writeByteArray(id, constant);
    bytes_.swap(array);
    array.assign(CPPByteArray());
    writer_.continueBlock(bytes_);
}

void POSTransferObj::writeBytes(uint32_t id, const void* bytes, uint32_t length) {
    writer().writeBytesPart(id, bytes, length);
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
    return copyToBlock(field.data, field.length);
}

ByteBlock POSTransferObj::takeBlock(uint32_t id) {
    attachReader();
    const ByteView field = reader_.viewPart(id);
    const bool isReceived = received_.data != nullptr && field.length != 0;
    if (!isReceived || !isReusable(received_.length, field.length))
        return copyToBlock(field.data, field.length);
    std::memmove(received_.data.get(), field.data, field.length);
    receivedArray_.borrow(nullptr, 0);
    received_.length = field.length;
    return std::move(received_);
}

const CPPByteArray& POSTransferObj::bytes() const {
    if (received_.data != nullptr) return receivedArray_.array();
    encodeDeferred();
    return bytes_;
}

ByteBlock POSTransferObj::copyWireForm() const {
    if (deferred_ == nullptr) return copyToBlock(bytes().data(), bytes().getSize());
    ByteBlock block;
    block.data.reset(new (std::nothrow) uint8_t[deferredSize_]);
    if (block.data == nullptr) throwStructuredWriteFailure();
    block.length = deferredSize_;
    storeStructuredBlock(block.data.get(), formatVersion_, deferred_, deferredCount_);
    return block;
}

void POSTransferObj::copyBytesTo(CPPByteArray& array) const {
    array.setOrThrow(bytes().data(), bytes().getSize());
}

void POSTransferObj::copyBytesFrom(const void* bytes, uint32_t length) {
    bytes_.setOrThrow(bytes, length);
    received_ = ByteBlock();
    deferred_ = nullptr;
}

void POSTransferObj::adoptBytes(ByteBlock received) {
    adoptBytes(CPPByteArray());
    received_ = std::move(received);
    receivedArray_.borrow(received_.data.get(), received_.length);
}

void POSTransferObj::adoptBytes(CPPByteArray&& received) {
    received_ = ByteBlock();
    deferred_ = nullptr;
    bytes_.assign(CPPByteArray());
    bytes_.swap(received);
}

CPPByteArray POSTransferObj::takeBytes() {
    CPPByteArray taken;
    if (received_.data != nullptr) {
        copyBytesTo(taken);
    } else {
        encodeDeferred();
        taken.swap(bytes_);
    }
    return taken;
}

void POSTransferObj::deferFields(const StructuredPart* fields, size_t count) {
    deferredSize_ = measureStructuredBlock(fields, count);
    deferred_ = fields;
    deferredCount_ = count;
}

void POSTransferObj::encodeDeferred() const {
    if (deferred_ == nullptr) return;
    encodeStructuredBlock(bytes_, formatVersion_, deferred_, deferredCount_);
    writer_.continueBlock(bytes_);
    deferred_ = nullptr;
}

StructuredByteArrayWriter& POSTransferObj::writer() {
    encodeDeferred();
    return writer_;
}

bool POSTransferObj::hasField(uint32_t id) {
    attachReader();
    return reader_.hasPart(id);
}

// viewNumber is faster than readUInt32Part, but reports a missing field in another way.
uint32_t POSTransferObj::readHeaderField(uint32_t id) {
    attachReader();
    return reader_.hasPart(id) ? reader_.viewNumber(id) : reader_.readUInt32Part(id);
}

void POSTransferObj::attachReader() {
    if (readerAttached_) return;
    reader_.initialize(&bytes());
    readerAttached_ = true;
}

}  // namespace dovrel
